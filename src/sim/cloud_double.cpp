#include "sim/cloud_double.h"

#include <algorithm>

#include "cloud/url_text.h"
#include "support/json.h"
#include "support/text.h"

namespace sodam {

using json = nlohmann::json;
using Fields = Firestore::Fields;

namespace {

constexpr const char* serviceTime = "2026-01-01T00:00:00.000000Z";

HttpResponse failure(int status, const char* code, const std::string& message) {
  json body = {{"error", {{"code", status}, {"message", message}, {"status", code}}}};
  return {status, body.dump()};
}

HttpResponse denied() {
  return failure(403, "PERMISSION_DENIED", "Missing or insufficient permissions.");
}

HttpResponse ok(const json& body) {
  return {200, body.dump()};
}

std::vector<std::string> segments(const std::string& path) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start <= path.size()) {
    const auto slash = std::min(path.find('/', start), path.size());
    parts.push_back(path.substr(start, slash - start));
    start = slash + 1;
  }
  return parts;
}

std::optional<std::string> bearer(const HttpRequest& request) {
  for (const auto& [name, value] : request.headers)
    if (name == "Authorization" && value.rfind("Bearer ", 0) == 0) return value.substr(7);
  return std::nullopt;
}

std::string queryValue(const std::string& query, const std::string& key) {
  const std::string needle = key + "=";
  std::size_t start = 0;
  while (start < query.size()) {
    const auto amp = std::min(query.find('&', start), query.size());
    if (query.compare(start, needle.size(), needle) == 0)
      return query.substr(start + needle.size(), amp - start - needle.size());
    start = amp + 1;
  }
  return {};
}

const Firestore::Array* arrayField(const Fields& fields, const std::string& name) {
  auto found = fields.find(name);
  return found == fields.end() ? nullptr : found->second.array();
}

bool holds(const Fields& fields, const std::string& name, const Firestore::Value& value) {
  const auto* array = arrayField(fields, name);
  return array && std::find(array->begin(), array->end(), value) != array->end();
}

}  // namespace

CloudDouble::CloudDouble(std::string project)
    : root_("projects/" + project + "/databases/(default)/documents") {}

std::string CloudDouble::name(const std::string& path) const {
  return root_ + "/" + path;
}

std::optional<Fields> CloudDouble::document(const std::string& path) const {
  auto found = store_.find(path);
  if (found == store_.end()) return std::nullopt;
  return found->second;
}

void CloudDouble::put(const std::string& path, Fields fields) {
  store_[path] = std::move(fields);
}

std::string CloudDouble::addUser(const std::string& uid) {
  const std::string token = format("refresh+%s/%d=", uid.c_str(), ++issued_);
  refreshTokens_[token] = uid;
  return token;
}

void CloudDouble::revoke(const std::string& refreshToken) {
  revoked_.insert(refreshToken);
}

std::size_t CloudDouble::commits() const {
  return static_cast<std::size_t>(
      std::count_if(requests_.begin(), requests_.end(),
                    [](const std::string& request) { return request.ends_with(":commit"); }));
}

HttpResponse CloudDouble::handle(const HttpRequest& request) {
  const auto scheme = request.url.find("://");
  const auto pathStart = scheme == std::string::npos ? 0 : request.url.find('/', scheme + 3);
  const std::string target =
      pathStart == std::string::npos ? std::string("/") : request.url.substr(pathStart);
  const auto mark = target.find('?');
  const std::string path = target.substr(0, mark);
  const std::string query = mark == std::string::npos ? std::string() : target.substr(mark + 1);
  requests_.push_back(request.method + " " + path);
  if (garbleWith) return {200, *garbleWith};
  if (failWith) return failure(*failWith, "INTERNAL", "The service is unavailable.");
  if (path == "/v1/token" && request.method == "POST") return token(request);
  const std::string documentsPath = "/v1/" + root_;
  if (path.rfind(documentsPath, 0) != 0) return failure(404, "NOT_FOUND", "No such endpoint.");
  return documents(request, path.substr(documentsPath.size()), query);
}

HttpResponse CloudDouble::token(const HttpRequest& request) {
  std::string form;
  for (char c : request.body)
    form += c == '+' ? std::string("%20") : std::string(1, c);
  const auto values = parseQuery(form);
  const auto refresh = values ? values->find("refresh_token") : decltype(values->find(""))();
  if (!values || refresh == values->end() || !refreshTokens_.contains(refresh->second) ||
      revoked_.contains(refresh->second))
    return failure(400, "INVALID_ARGUMENT", "INVALID_REFRESH_TOKEN");
  const std::string uid = refreshTokens_[refresh->second];
  std::string handedOut = refresh->second;
  if (rotations_ > 0) {
    --rotations_;
    handedOut = addUser(uid);
  }
  const std::string idToken = format("id.%d.%s", ++issued_, uid.c_str());
  idTokens_[idToken] = uid;
  return ok({{"access_token", idToken},
             {"expires_in", std::to_string(tokenSeconds_)},
             {"token_type", "Bearer"},
             {"refresh_token", handedOut},
             {"id_token", idToken},
             {"user_id", uid},
             {"project_id", "sodamjari"}});
}

std::optional<std::string> CloudDouble::caller(const HttpRequest& request) const {
  const auto token = bearer(request);
  if (!token) return std::nullopt;
  auto found = idTokens_.find(*token);
  if (found == idTokens_.end()) return std::nullopt;
  return found->second;
}

HttpResponse CloudDouble::documents(const HttpRequest& request, const std::string& path,
                                    const std::string& query) {
  const auto uid = caller(request);
  if (!uid) return failure(401, "UNAUTHENTICATED", "Request had invalid credentials.");
  if (path == ":runQuery" && request.method == "POST") return runQuery(*uid, request.body);
  if (path == ":commit" && request.method == "POST") return commit(*uid, request.body);
  if (path.size() < 2 || path[0] != '/' || request.method != "GET")
    return failure(400, "INVALID_ARGUMENT", "Unsupported request.");
  const std::string inner = path.substr(1);
  if (segments(inner).size() % 2 == 1) return list(*uid, inner, query);
  return get(*uid, inner);
}

bool CloudDouble::mayRead(const std::string& uid, const std::string& path) const {
  if (!rules) return true;
  const auto parts = segments(path);
  if (parts[0] == "codes") return parts.size() == 2;
  if (parts[0] != "groups" || parts.size() < 2) return false;
  const auto group = document("groups/" + parts[1]);
  if (!group) return parts.size() == 2;  // a missing group reads as missing
  return holds(*group, "members", Firestore::Value(uid));
}

HttpResponse CloudDouble::get(const std::string& uid, const std::string& path) {
  if (!mayRead(uid, path)) return denied();
  const auto fields = document(path);
  if (!fields) return failure(404, "NOT_FOUND", "Document \"" + name(path) + "\" not found.");
  return ok({{"name", name(path)},
             {"fields", Firestore::encodeFields(*fields)},
             {"createTime", serviceTime},
             {"updateTime", serviceTime}});
}

HttpResponse CloudDouble::list(const std::string& uid, const std::string& path,
                               const std::string& query) {
  // Only a group's members may be listed, by its members; codes and groups never.
  const auto parts = segments(path);
  if (rules && (parts.size() != 3 || parts[0] != "groups" || parts[2] != "members" ||
                !mayRead(uid, path + "/any")))
    return denied();
  std::vector<std::string> inside;
  for (const auto& [key, fields] : store_)
    if (key.rfind(path + "/", 0) == 0 && key.find('/', path.size() + 1) == std::string::npos)
      inside.push_back(key);
  const int size = std::max(1, std::atoi(queryValue(query, "pageSize").c_str()));
  const std::string pageToken = queryValue(query, "pageToken");
  std::size_t first = 0;
  if (!pageToken.empty()) {
    const auto slash = pageToken.find('/');
    if (pageToken.rfind("after", 0) != 0 || slash == std::string::npos)
      return failure(400, "INVALID_ARGUMENT", "Invalid page token.");
    first = static_cast<std::size_t>(std::atoi(pageToken.c_str() + slash + 1));
  }
  json answer = json::object();
  for (std::size_t i = first; i < inside.size() && i < first + size; ++i)
    answer["documents"].push_back(
        {{"name", name(inside[i])}, {"fields", Firestore::encodeFields(store_[inside[i]])}});
  // A token with characters a query would mangle, so clients must pass it on as it came.
  if (first + size < inside.size()) answer["nextPageToken"] = format("after+=/%zu", first + size);
  return ok(answer);
}

HttpResponse CloudDouble::runQuery(const std::string& uid, const std::string& body) {
  const auto parsed = parseJson(body);
  if (!parsed) return failure(400, "INVALID_ARGUMENT", "Invalid JSON payload.");
  const auto& query = jsonField(*parsed, "structuredQuery");
  const auto& from = jsonField(query, "from");
  const auto collection = from.is_array() && from.size() == 1
                              ? jsonRequired<std::string>(from[0], "collectionId")
                              : std::nullopt;
  const auto& filter = jsonField(jsonField(query, "where"), "fieldFilter");
  const auto field = jsonRequired<std::string>(jsonField(filter, "field"), "fieldPath");
  const auto value = Firestore::decode(jsonField(filter, "value"));
  if (!collection || !field || !value ||
      jsonRequired<std::string>(filter, "op") != "ARRAY_CONTAINS")
    return failure(400, "INVALID_ARGUMENT", "Unsupported query.");
  // The rules let a user ask only for the groups that hold them.
  if (rules && (*collection != "groups" || *field != "members" || value->string() != uid))
    return denied();
  json answer = json::array();
  for (const auto& [key, fields] : store_)
    if (key.rfind(*collection + "/", 0) == 0 && segments(key).size() == 2 &&
        holds(fields, *field, *value))
      answer.push_back(
          {{"document", {{"name", name(key)}, {"fields", Firestore::encodeFields(fields)}}},
           {"readTime", serviceTime}});
  if (answer.empty()) answer.push_back({{"readTime", serviceTime}});
  return ok(answer);
}

void CloudDouble::Http::send(HttpRequest request, Answer answer) {
  HttpResponse response = service_.handle(request);
  scheduler_.post(
      [answer = std::move(answer), response = std::move(response)] { answer(response); });
}

}  // namespace sodam
