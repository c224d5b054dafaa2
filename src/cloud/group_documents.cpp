#include "cloud/group_documents.h"

namespace sodam {

namespace {
using Fields = Firestore::Fields;

const Firestore::Value* field(const Fields& fields, const char* key) {
  const auto it = fields.find(key);
  return it == fields.end() ? nullptr : &it->second;
}

std::string text(const Fields& fields, const char* key, std::string fallback = {}) {
  const Firestore::Value* value = field(fields, key);
  return value && value->string() ? *value->string() : fallback;
}

int whole(const Fields& fields, const char* key, int fallback = 0) {
  const Firestore::Value* value = field(fields, key);
  const auto number = value ? value->wholeNumber() : std::nullopt;
  return number ? static_cast<int>(*number) : fallback;
}

// A share published as -1 (or any negative) means none.
std::optional<double> share(const Fields& fields, const char* key) {
  const Firestore::Value* value = field(fields, key);
  const auto number = value ? value->number() : std::nullopt;
  if (!number || *number < 0) return std::nullopt;
  return number;
}

MateLook lookOf(const Firestore::Value* value) {
  if (!value || !value->fields()) return MateLook::from(std::nullopt);
  MateLook::Dictionary dictionary;
  for (const auto& [key, part] : *value->fields()) {
    if (const auto number = part.wholeNumber()) dictionary[key] = static_cast<int>(*number);
  }
  return MateLook::from(dictionary);
}

UseMode modeOf(const Fields& fields) {
  const int raw = whole(fields, "mode");
  return raw == UseMode::watch ? UseMode::watch : UseMode::laptop;
}
}  // namespace

StudyGroup GroupDocuments::group(const Firestore::Doc& doc) {
  StudyGroup group;
  group.id = doc.id();
  group.name = text(doc.fields, "name", group.name);
  group.owner = text(doc.fields, "owner");
  group.code = text(doc.fields, "code");
  if (const auto* members = field(doc.fields, "members"); members && members->array()) {
    for (const auto& uid : *members->array()) {
      if (uid.string()) group.members.push_back(*uid.string());
    }
  }
  if (const auto* sessions = field(doc.fields, "sessions"); sessions && sessions->array()) {
    for (const auto& entry : *sessions->array()) {
      if (!entry.fields()) continue;
      if (auto s = session(*entry.fields())) group.sessions.push_back(std::move(*s));
    }
  }
  return group;
}

Member GroupDocuments::member(const Firestore::Doc& doc) {
  const Fields& f = doc.fields;
  Member m;
  m.id = doc.id();
  m.name = text(f, "name", m.name);
  m.look = lookOf(field(f, "look"));
  m.state = MateState::fromRaw(text(f, "state"));
  m.mode = modeOf(f);
  if (const auto* at = field(f, "at"); at && at->date()) m.at = *at->date();
  m.day = text(f, "day");
  m.good = share(f, "good");
  m.focus = whole(f, "focus");
  m.checks = whole(f, "checks");
  m.turtle = whole(f, "turtle");
  m.phone = whole(f, "phone");
  m.week = text(f, "week");
  m.weekGood = share(f, "weekGood");
  m.weekFocus = whole(f, "weekFocus");
  m.place = text(f, "place");
  return m;
}

std::optional<GroupSession> GroupDocuments::session(const Fields& fields) {
  const Firestore::Value* id = field(fields, "id");
  const Firestore::Value* start = field(fields, "start");
  if (!id || !id->string() || !start || !start->date()) return std::nullopt;
  GroupSession s;
  s.id = *id->string();
  s.title = text(fields, "title", s.title);
  s.start = *start->date();
  s.minutes = whole(fields, "minutes", GroupSession::defaultMinutes);
  s.repeats = GroupSession::Repeat::fromRaw(text(fields, "repeat"));
  return s;
}

Firestore::Value GroupDocuments::session(const GroupSession& s) {
  return Fields{{"id", s.id},
                {"title", s.title},
                {"start", s.start},
                {"minutes", s.minutes},
                {"repeat", std::string(s.repeats.raw())}};
}

Firestore::Value GroupDocuments::look(const MateLook& look) {
  Fields fields;
  for (const auto& [key, value] : look.dictionary())
    fields[key] = value;
  return fields;
}

}  // namespace sodam
