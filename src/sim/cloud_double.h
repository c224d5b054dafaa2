#pragma once
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cloud/firestore.h"
#include "cloud/http_client.h"
#include "support/scheduler.h"

namespace sodam {

// A stand-in for the hosted service, in memory: the token service and the
// part of the document database's REST interface the client uses (documents
// get and list, ":runQuery" with an array-contains filter, ":commit" with its
// write kinds, all-or-nothing), in their real request and response shapes.
// With `rules` on it refuses what the deployed security rules refuse: reads
// by non-members, writes to another member's status, edits by anyone but the
// owner, and a join beyond `capacity`. It answers one request at a time;
// tests serve it over loopback TCP, the simulation calls it in-process.
class CloudDouble {
 public:
  explicit CloudDouble(std::string project = "sodamjari");

  // The answer to one request; status 0 means the connection is dropped.
  HttpResponse handle(const HttpRequest& request);

  // A user the token service knows; gives their refresh token.
  std::string addUser(const std::string& uid);
  // The token service then refuses this refresh token with 400.
  void revoke(const std::string& refreshToken);
  // Seconds the token service puts in `expires_in`.
  void setTokenSeconds(int seconds) { tokenSeconds_ = seconds; }
  // The next `count` refreshes also hand out a new refresh token.
  void rotateRefreshTokens(int count) { rotations_ = count; }

  bool rules = true;
  std::size_t capacity = 20;  // members a group may hold under the rules
  // The next commit drops the connection before it applies anything.
  void dieOnNextCommit() { dieOnCommit_ = true; }
  // Every request answers this status with an error body until cleared.
  std::optional<int> failWith;
  // Every answer is this text instead of JSON until cleared.
  std::optional<std::string> garbleWith;

  // The store, by path below the documents root.
  std::optional<Firestore::Fields> document(const std::string& path) const;
  void put(const std::string& path, Firestore::Fields fields);
  std::size_t documentCount() const { return store_.size(); }

  // What came in, as "METHOD path" with the path below the service's host and
  // without the query.
  const std::vector<std::string>& requests() const { return requests_; }
  std::size_t commits() const;
  void clearRequests() { requests_.clear(); }

  // The client of tests and the simulation that calls the double in-process:
  // each answer is posted to the scheduler, as a real transport would.
  class Http final : public HttpClient {
   public:
    Http(CloudDouble& service, Scheduler& scheduler) : service_(service), scheduler_(scheduler) {}
    void send(HttpRequest request, Answer answer) override;

   private:
    CloudDouble& service_;
    Scheduler& scheduler_;
  };

 private:
  struct Query;
  HttpResponse token(const HttpRequest& request);
  HttpResponse documents(const HttpRequest& request, const std::string& path,
                         const std::string& query);
  HttpResponse get(const std::string& uid, const std::string& path);
  HttpResponse list(const std::string& uid, const std::string& path, const std::string& query);
  HttpResponse runQuery(const std::string& uid, const std::string& body);
  HttpResponse commit(const std::string& uid, const std::string& body);
  std::optional<std::string> caller(const HttpRequest& request) const;
  bool mayRead(const std::string& uid, const std::string& path) const;
  std::optional<std::string> refusal(const std::string& uid, const nlohmann::json& write,
                                     const std::map<std::string, Firestore::Fields>& staged) const;
  std::string name(const std::string& path) const;

  std::string root_;
  std::map<std::string, Firestore::Fields> store_;
  std::map<std::string, std::string> refreshTokens_;  // refresh token -> uid
  std::map<std::string, std::string> idTokens_;       // ID token -> uid
  std::set<std::string> revoked_;
  std::vector<std::string> requests_;
  int tokenSeconds_ = 3600;
  int rotations_ = 0;
  int issued_ = 0;
  bool dieOnCommit_ = false;
};

}  // namespace sodam
