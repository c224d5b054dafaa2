#include <algorithm>

#include "sim/cloud_double.h"
#include "support/json.h"

namespace sodam {

using json = nlohmann::json;
using Fields = Firestore::Fields;
using Store = std::map<std::string, Fields>;

namespace {

struct Change {
  enum class Kind { set, update, erase, arrayUnion, arrayRemove, unknown };
  Kind kind = Kind::unknown;
  std::string path;
  Fields fields;
  std::optional<std::vector<std::string>> mask;
  bool mustExist = false;
  std::string field;
  Firestore::Array values;
};

std::string pathOf(const std::string& name, const std::string& root) {
  return name.rfind(root + "/", 0) == 0 ? name.substr(root.size() + 1) : std::string();
}

std::vector<std::string> maskOf(const json& write) {
  std::vector<std::string> mask;
  for (const auto& path : jsonField(jsonField(write, "updateMask"), "fieldPaths"))
    if (path.is_string()) mask.push_back(path.get<std::string>());
  return mask;
}

Change transformOf(const json& transform, const std::string& root) {
  Change change;
  change.path = pathOf(jsonRequired<std::string>(transform, "document").value_or(""), root);
  const auto& list = jsonField(transform, "fieldTransforms");
  if (!list.is_array() || list.size() != 1) return change;
  change.field = jsonRequired<std::string>(list[0], "fieldPath").value_or("");
  for (const auto& [key, kind] : {std::pair{"appendMissingElements", Change::Kind::arrayUnion},
                                  std::pair{"removeAllFromArray", Change::Kind::arrayRemove}})
    if (list[0].contains(key)) {
      change.kind = kind;
      if (auto values = Firestore::decode(json{{"arrayValue", list[0][key]}}))
        change.values = *values->array();
    }
  return change;
}

Change changeOf(const json& write, const std::string& root) {
  if (auto name = jsonRequired<std::string>(write, "delete"))
    return Change{Change::Kind::erase, pathOf(*name, root), {}, {}, false, {}, {}};
  if (write.contains("transform")) return transformOf(write["transform"], root);
  const auto& update = jsonField(write, "update");
  Change change;
  change.path = pathOf(jsonRequired<std::string>(update, "name").value_or(""), root);
  if (change.path.empty()) return change;
  change.kind = write.contains("updateMask") ? Change::Kind::update : Change::Kind::set;
  change.fields = Firestore::decodeFields(jsonField(update, "fields"));
  if (change.kind == Change::Kind::update) change.mask = maskOf(write);
  change.mustExist = jsonField(jsonField(write, "currentDocument"), "exists") == true;
  return change;
}

void apply(Store& store, const Change& change) {
  switch (change.kind) {
    case Change::Kind::set:
      store[change.path] = change.fields;
      break;
    case Change::Kind::update:
      for (const auto& field : *change.mask) {
        auto given = change.fields.find(field);
        if (given == change.fields.end())
          store[change.path].erase(field);
        else
          store[change.path][field] = given->second;
      }
      break;
    case Change::Kind::erase:
      store.erase(change.path);
      break;
    case Change::Kind::arrayUnion:
    case Change::Kind::arrayRemove: {
      auto& slot = store[change.path][change.field];
      Firestore::Array array = slot.array() ? *slot.array() : Firestore::Array{};
      for (const auto& value : change.values) {
        const bool present = std::find(array.begin(), array.end(), value) != array.end();
        if (change.kind == Change::Kind::arrayUnion && !present) array.push_back(value);
        if (change.kind == Change::Kind::arrayRemove) std::erase(array, value);
      }
      slot = Firestore::Value(array);
      break;
    }
    case Change::Kind::unknown:
      break;
  }
}

std::vector<std::string> parts(const std::string& path) {
  std::vector<std::string> out;
  std::size_t start = 0;
  while (start <= path.size()) {
    const auto slash = std::min(path.find('/', start), path.size());
    out.push_back(path.substr(start, slash - start));
    start = slash + 1;
  }
  return out;
}

std::string textOf(const Fields& fields, const char* name) {
  auto found = fields.find(name);
  return found == fields.end() ? std::string() : found->second.string().value_or("");
}

// What the deployed rules refuse of one write, given the store before it.
bool refused(const std::string& uid, const Change& change, const Store& store,
             std::size_t capacity) {
  const auto path = parts(change.path);
  const Firestore::Value me(uid);
  auto group = [&](const std::string& gid) -> const Fields* {
    auto found = store.find("groups/" + gid);
    return found == store.end() ? nullptr : &found->second;
  };
  if (path.size() == 2 && path[0] == "codes") {
    if (!store.contains(change.path)) return change.kind != Change::Kind::set;
    const Fields* target = group(textOf(store.at(change.path), "gid"));
    return target && textOf(*target, "owner") != uid;
  }
  if (path.size() == 4 && path[0] == "groups" && path[2] == "members") {
    const Fields* target = group(path[1]);
    const bool owner = target && textOf(*target, "owner") == uid;
    return path[3] != uid && !(owner && change.kind == Change::Kind::erase);
  }
  if (path.size() != 2 || path[0] != "groups") return true;
  const Fields* existing = group(path[1]);
  if (!existing) {
    const auto* members =
        change.fields.contains("members") ? change.fields.at("members").array() : nullptr;
    return change.kind != Change::Kind::set || textOf(change.fields, "owner") != uid || !members ||
           *members != Firestore::Array{me};
  }
  if (textOf(*existing, "owner") == uid) return false;
  // Anyone else may only add or take themselves, and only into room left.
  if (change.field != "members" || change.values != Firestore::Array{me}) return true;
  if (change.kind == Change::Kind::arrayRemove) return false;
  if (change.kind != Change::Kind::arrayUnion) return true;
  const auto* members = existing->contains("members") ? existing->at("members").array() : nullptr;
  const bool inside = members && std::find(members->begin(), members->end(), me) != members->end();
  return !inside && members && members->size() >= capacity;
}

}  // namespace

HttpResponse CloudDouble::commit(const std::string& uid, const std::string& body) {
  const auto parsed = parseJson(body);
  const auto& writes = parsed ? jsonField(*parsed, "writes") : jsonField(json(), "writes");
  if (!writes.is_array()) return {400, R"({"error":{"code":400,"status":"INVALID_ARGUMENT"}})"};
  if (dieOnCommit_) {
    dieOnCommit_ = false;
    return {0, {}};
  }
  Store staged = store_;
  json results = json::array();
  for (const auto& write : writes) {
    const Change change = changeOf(write, root_);
    if (change.kind == Change::Kind::unknown || change.path.empty())
      return {400,
              R"({"error":{"code":400,"message":"Invalid write.","status":"INVALID_ARGUMENT"}})"};
    if (rules && refused(uid, change, staged, capacity))
      return {
          403,
          R"({"error":{"code":403,"message":"Missing or insufficient permissions.","status":"PERMISSION_DENIED"}})"};
    if (change.mustExist && !staged.contains(change.path))
      return {404, R"({"error":{"code":404,"message":"No document to update: )" +
                       name(change.path) + R"(","status":"NOT_FOUND"}})"};
    apply(staged, change);
    results.push_back({{"updateTime", "2026-01-01T00:00:00.000000Z"}});
  }
  store_ = std::move(staged);
  return {200,
          json{{"writeResults", results}, {"commitTime", "2026-01-01T00:00:00.000000Z"}}.dump()};
}

}  // namespace sodam
