#include "alerts/pill.h"

#include <type_traits>

namespace sodam {

std::string_view Pill::Art::symbolName() const {
  if (const auto* symbol = std::get_if<Symbol>(&value_)) return symbol->name;
  return {};
}

std::optional<IssueKind> Pill::Art::issue() const {
  if (const auto* fix = std::get_if<Fix>(&value_)) return fix->kind;
  return std::nullopt;
}

std::optional<PillEyes::Mood> Pill::Art::mood() const {
  if (const auto* buddy = std::get_if<Buddy>(&value_)) return buddy->mood;
  if (const auto* say = std::get_if<Say>(&value_)) return say->mood;
  return std::nullopt;
}

int Pill::Art::seconds() const {
  if (const auto* countdown = std::get_if<Countdown>(&value_)) return countdown->seconds;
  if (const auto* breathe = std::get_if<Breathe>(&value_)) return breathe->seconds;
  return 0;
}

std::string Pill::Art::describe() const {
  return std::visit(
      [](const auto& art) -> std::string {
        using T = std::decay_t<decltype(art)>;
        if constexpr (std::is_same_v<T, Symbol>) return "symbol(" + art.name + ")";
        if constexpr (std::is_same_v<T, Fix>) return "fix(" + std::string(art.kind.raw()) + ")";
        if constexpr (std::is_same_v<T, Buddy>)
          return "buddy(" + std::string(PillEyes::name(art.mood)) + ")";
        if constexpr (std::is_same_v<T, Say>)
          return "say(" + std::string(PillEyes::name(art.mood)) + ")";
        if constexpr (std::is_same_v<T, Countdown>)
          return "countdown(" + std::to_string(art.seconds) + ")";
        if constexpr (std::is_same_v<T, Breathe>)
          return "breathe(" + std::to_string(art.seconds) + ")";
      },
      value_);
}

Pill::Pill(Date started, Art art, Theme tint, std::optional<std::string> title,
           std::optional<std::string> detail)
    : art(std::move(art)),
      tint(tint),
      title(std::move(title)),
      detail(std::move(detail)),
      started(started) {}

Pill::Pill(Date started, std::string symbol, Theme tint, std::optional<std::string> title,
           std::optional<std::string> detail)
    : Pill(started, Art::symbol(std::move(symbol)), tint, std::move(title), std::move(detail)) {}

}  // namespace sodam
