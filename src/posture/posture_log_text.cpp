#include "posture/posture_log_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

// The shortest text that reads back as the same float or double, the same
// routine the JSON library uses for its own numbers.
#include <nlohmann/detail/conversions/to_chars.hpp>

namespace sodam {

namespace {

template <class Number>
void appendNumber(std::vector<char>& pool, Number value) {
  std::array<char, 40> buffer;
  char* end = buffer.data();
  if (std::isfinite(value)) {
    end = nlohmann::detail::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  } else {
    // Unreachable for snapshots, which hold finite numbers only; a reader
    // skips the entry.
    std::memcpy(end, "null", 4);
    end += 4;
  }
  pool.push_back(static_cast<char>(end - buffer.data()));
  pool.insert(pool.end(), buffer.data(), end);
}

struct Field {
  std::string_view key;  // with quotes and colon
  const std::optional<float> Snapshot::*optional = nullptr;
  const float Snapshot::*required = nullptr;
};

constexpr std::array<Field, 8> fields{{
    {"\"forward\":", &Snapshot::forward, nullptr},
    {"\"drop\":", &Snapshot::drop, nullptr},
    {"\"nod\":", &Snapshot::nod, nullptr},
    {"\"shoulder\":", &Snapshot::shoulder, nullptr},
    {"\"tilt\":", nullptr, &Snapshot::tilt},
    {"\"lean\":", &Snapshot::lean, nullptr},
    {"\"close\":", nullptr, &Snapshot::close},
    {"\"dist\":", &Snapshot::dist, nullptr},
}};

bool present(const Snapshot& snapshot, const Field& field) {
  return field.required || (snapshot.*field.optional).has_value();
}

float valueOf(const Snapshot& snapshot, const Field& field) {
  return field.required ? snapshot.*field.required : *(snapshot.*field.optional);
}

void appendNumbers(std::vector<char>& pool, const PostureEntry& entry) {
  appendNumber(pool, entry.t.sinceReference);
  if (!entry.m) return;
  for (const auto& field : fields) {
    if (present(*entry.m, field)) appendNumber(pool, valueOf(*entry.m, field));
  }
}

// Counts the characters an entry takes, for dropping and for sizing.
struct Count {
  std::size_t bytes = 0;
  void add(std::string_view text) { bytes += text.size(); }
};

// Copies a short run without a library call: a month of entries has
// hundreds of thousands of numbers of a few characters each.
void copyShort(std::uint8_t* to, const char* from, std::size_t count) {
  if (count >= 8) {
    for (std::size_t i = 0; i + 8 <= count; i += 8)
      std::memcpy(to + i, from + i, 8);
    std::memcpy(to + count - 8, from + count - 8, 8);
  } else {
    for (std::size_t i = 0; i < count; ++i)
      to[i] = static_cast<std::uint8_t>(from[i]);
  }
}

// Writes into a buffer sized by a Count of the same entries beforehand.
struct Write {
  Bytes& out;
  std::size_t at = 0;
  void add(std::string_view text) {
    if (at + text.size() > out.size()) out.resize(std::max(out.size() * 2, at + text.size()));
    copyShort(out.data() + at, text.data(), text.size());
    at += text.size();
  }
};

// Reads the next kept number and moves past it.
std::string_view nextNumber(const char*& numbers) {
  auto length = static_cast<unsigned char>(*numbers);
  std::string_view text(numbers + 1, length);
  numbers += 1 + length;
  return text;
}

// One entry's text, its numbers taken from `numbers`, which moves on.
template <class Out>
void writeEntry(Out& out, const PostureEntry& entry, const char*& numbers) {
  out.add("{\"t\":");
  out.add(nextNumber(numbers));
  out.add(",\"k\":\"");
  out.add(PostureEntry::raw(entry.k));
  out.add("\",\"i\":[");
  bool first = true;
  for (IssueKind kind : entry.i) {
    out.add(first ? "\"" : ",\"");
    out.add(kind.raw());
    out.add("\"");
    first = false;
  }
  out.add("]");
  if (entry.m) {
    out.add(",\"m\":{");
    first = true;
    for (const auto& field : fields) {
      if (!present(*entry.m, field)) continue;
      if (!first) out.add(",");
      out.add(field.key);
      out.add(nextNumber(numbers));
      first = false;
    }
    out.add("}");
  }
  out.add("}");
}

}  // namespace

void PostureLogText::append(const PostureEntry& entry) {
  // Grown by an eighth, not doubled: the pool is half the log's memory.
  constexpr std::size_t mostPerEntry = 256;
  if (pool_.size() + mostPerEntry > pool_.capacity()) {
    pool_.reserve((pool_.size() + mostPerEntry) * 9 / 8);
  }
  std::size_t start = pool_.size();
  appendNumbers(pool_, entry);
  const char* numbers = pool_.data() + start;
  Count count;
  writeEntry(count, entry, numbers);
  textBytes_ += count.bytes;
}

void PostureLogText::dropFront(const std::deque<PostureEntry>& entries, std::size_t count) {
  const char* numbers = pool_.data() + head_;
  Count dropped;
  for (std::size_t i = 0; i < count && i < entries.size(); ++i) {
    writeEntry(dropped, entries[i], numbers);
  }
  head_ = static_cast<std::size_t>(numbers - pool_.data());
  textBytes_ -= dropped.bytes;
  if (head_ * 16 > pool_.size()) {
    pool_.erase(pool_.begin(), pool_.begin() + static_cast<std::ptrdiff_t>(head_));
    head_ = 0;
  }
}

void PostureLogText::rebuild(const std::deque<PostureEntry>& entries) {
  pool_.clear();
  head_ = 0;
  textBytes_ = 0;
  for (const auto& entry : entries)
    append(entry);
}

Bytes PostureLogText::encode(const std::deque<PostureEntry>& entries) const {
  Bytes out(textBytes_ + entries.size() + 1);
  Write write{out};
  write.add("[");
  const char* numbers = pool_.data() + head_;
  bool first = true;
  for (const auto& entry : entries) {
    if (!first) write.add(",");
    writeEntry(write, entry, numbers);
    first = false;
  }
  write.add("]");
  out.resize(write.at);
  return out;
}

}  // namespace sodam
