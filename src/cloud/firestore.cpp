#include "cloud/firestore.h"

#include "cloud/cloud_auth.h"
#include "support/json.h"
#include "support/utf8.h"

namespace sodam {

using json = nlohmann::json;

namespace {

// A body that isn't UTF-8 counts as empty in an error.
std::string bodyText(const std::string& body) {
  return utf8::isValid(body) ? body : std::string();
}

CloudError httpError(const HttpResponse& response) {
  return CloudError::http(response.status, bodyText(response.body));
}

bool plausibleUrl(const std::string& url) {
  const auto scheme = url.find("://");
  if (scheme == std::string::npos || scheme == 0) return false;
  for (char c : url)
    if (static_cast<unsigned char>(c) <= ' ' || c == 0x7f) return false;
  return url.size() > scheme + 3;
}

}  // namespace

Firestore::Firestore(CloudAuth& auth, HttpClient& http) : auth_(auth), http_(http) {}

void Firestore::call(const std::string& method, const std::string& url, std::optional<json> body,
                     std::function<void(std::optional<CloudError>, const HttpResponse&)> done) {
  auth_.token([this, method, url, body = std::move(body),
               done = std::move(done)](CloudResult<std::string> token) {
    if (!token.ok()) return done(token.error(), HttpResponse{});
    if (!plausibleUrl(url)) return done(CloudError::bad(), HttpResponse{});
    HttpRequest request{
        method, url, {{"Authorization", "Bearer " + token.value()}}, {}, timeoutSeconds};
    if (body) {
      request.headers.emplace_back("Content-Type", "application/json");
      request.body = body->dump();
    }
    http_.send(std::move(request), [done](HttpResponse response) { done(std::nullopt, response); });
  });
}

void Firestore::get(const std::string& path, Reply<std::optional<Doc>> done) {
  call("GET", auth_.config().documents() + "/" + path, std::nullopt,
       [done](std::optional<CloudError> error, const HttpResponse& response) {
         if (error) return done(*error);
         if (response.status == 404) return done(std::optional<Doc>());
         auto parsed = response.status == 200 ? parseJson(response.body) : std::nullopt;
         if (!parsed) return done(httpError(response));
         done(decodeDocument(*parsed));
       });
}

void Firestore::list(const std::string& path, Reply<std::vector<Doc>> done) {
  const std::string url =
      auth_.config().documents() + "/" + path + "?pageSize=" + std::to_string(pageSize);
  listPage(url, url, {}, std::move(done));
}

void Firestore::listPage(std::string first, std::string url, std::vector<Doc> gathered,
                         Reply<std::vector<Doc>> done) {
  call("GET", url, std::nullopt,
       [this, first, gathered = std::move(gathered), done](std::optional<CloudError> error,
                                                           const HttpResponse& response) mutable {
         if (error) return done(*error);
         auto parsed = response.status == 200 ? parseJson(response.body) : std::nullopt;
         if (!parsed || !parsed->is_object()) return done(httpError(response));
         if (const auto& documents = jsonField(*parsed, "documents"); documents.is_array())
           for (const auto& document : documents)
             if (auto doc = decodeDocument(document)) gathered.push_back(std::move(*doc));
         const auto next = jsonRequired<std::string>(*parsed, "nextPageToken");
         if (!next) return done(std::move(gathered));
         listPage(first, first + "&pageToken=" + *next, std::move(gathered), std::move(done));
       });
}

void Firestore::whereContains(const std::string& collection, const std::string& field,
                              const std::string& value, Reply<std::vector<Doc>> done) {
  json filter = {
      {"field", {{"fieldPath", field}}}, {"op", "ARRAY_CONTAINS"}, {"value", encode(Value(value))}};
  json query = {{"structuredQuery",
                 {{"from", json::array({{{"collectionId", collection}}})},
                  {"where", {{"fieldFilter", filter}}}}}};
  call("POST", auth_.config().documents() + ":runQuery", std::move(query),
       [done](std::optional<CloudError> error, const HttpResponse& response) {
         if (error) return done(*error);
         auto parsed = response.status == 200 ? parseJson(response.body) : std::nullopt;
         if (!parsed || !parsed->is_array()) return done(httpError(response));
         std::vector<Doc> found;
         for (const auto& entry : *parsed)
           if (auto doc = decodeDocument(jsonField(entry, "document"))) found.push_back(*doc);
         done(std::move(found));
       });
}

void Firestore::commit(std::vector<Write> writes, CloudDone done) {
  json encoded = json::array();
  for (const auto& write : writes)
    encoded.push_back(encodeWrite(write, auth_.config().documentsName()));
  call("POST", auth_.config().documents() + ":commit", json{{"writes", encoded}},
       [done](std::optional<CloudError> error, const HttpResponse& response) {
         if (error) return done(error);
         if (response.status != 200) return done(httpError(response));
         done(std::nullopt);
       });
}

}  // namespace sodam
