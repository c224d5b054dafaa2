#include "linux/curl_http.h"

#include <curl/curl.h>

#include <memory>
#include <mutex>

namespace sodam {

namespace {

std::size_t collect(char* data, std::size_t size, std::size_t count, void* target) {
  static_cast<std::string*>(target)->append(data, size * count);
  return size * count;
}

void initialiseOnce() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

}  // namespace

CurlHttp::CurlHttp(Scheduler& scheduler) : scheduler_(scheduler) {
  initialiseOnce();
}

void CurlHttp::send(HttpRequest request, Answer answer) {
  queue_.async([this, request = std::move(request), answer = std::move(answer)] {
    HttpResponse response = perform(request);
    scheduler_.post([answer, response = std::move(response)] { answer(response); });
  });
}

HttpResponse CurlHttp::perform(const HttpRequest& request) {
  initialiseOnce();
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), curl_easy_cleanup);
  if (!curl) return {};
  // No "Expect: 100-continue" pause before a larger body.
  curl_slist* headers = curl_slist_append(nullptr, "Expect:");
  for (const auto& [name, value] : request.headers)
    headers = curl_slist_append(headers, (name + ": " + value).c_str());
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headerList(headers,
                                                                         curl_slist_free_all);
  std::string body;
  CURL* handle = curl.get();
  curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeoutSeconds * 1000));
  curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, collect);
  curl_easy_setopt(handle, CURLOPT_WRITEDATA, &body);
  if (request.method == "POST" || !request.body.empty()) {
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(request.body.size()));
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.c_str());
  }
  if (request.method != "GET" && request.method != "POST")
    curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, request.method.c_str());
  if (curl_easy_perform(handle) != CURLE_OK) return {};
  long status = 0;
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  return {static_cast<int>(status), std::move(body)};
}

}  // namespace sodam
