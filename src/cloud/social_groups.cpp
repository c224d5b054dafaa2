// The operations on one group: create, join, leave or close, and save.
#include <algorithm>

#include "cloud/group_documents.h"
#include "cloud/social.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {
const char* idAlphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr std::uint64_t idAlphabetSize = 62;
const char* defaultGroupName = "우리 모임";

std::string groupPath(const std::string& gid) {
  return "groups/" + gid;
}
std::string memberPath(const std::string& gid, const std::string& uid) {
  return "groups/" + gid + "/members/" + uid;
}
std::string codePath(const std::string& code) {
  return "codes/" + code;
}

std::string digitsOf(const std::string& text) {
  std::string digits;
  for (char c : text) {
    if (c >= '0' && c <= '9') digits += c;
  }
  return digits;
}

Firestore::Array sessionValues(const std::vector<GroupSession>& sessions) {
  Firestore::Array values;
  for (const GroupSession& s : sessions)
    values.push_back(GroupDocuments::session(s));
  return values;
}

const StudyGroup* findGroup(const std::vector<StudyGroup>& groups, const std::string& gid) {
  const auto it =
      std::find_if(groups.begin(), groups.end(), [&](const StudyGroup& g) { return g.id == gid; });
  return it == groups.end() ? nullptr : &*it;
}
}  // namespace

std::string Social::randomId() const {
  std::string id;
  for (int i = 0; i < idLength; ++i)
    id += idAlphabet[random_(idAlphabetSize)];
  return id;
}

void Social::drawCode(int draw, std::function<void(CloudResult<std::string>)> done) {
  const std::string code = format("%08llu", static_cast<unsigned long long>(random_(codeRange)));
  if (draw == codeDraws) return done(code);  // the odds of a fifth clash are left alone
  store_.get(codePath(code),
             weakCall(self_, [draw, code, done](Social& social,
                                                CloudResult<std::optional<Firestore::Doc>> found) {
               if (!found.ok()) return done(found.error());
               if (!found.value()) return done(code);
               social.drawCode(draw + 1, done);
             }));
}

void Social::create(const std::string& name, std::function<void(CloudResult<StudyGroup>)> done) {
  const auto uid = me();
  if (!uid) return done(CloudError::signedOut());
  drawCode(1,
           weakCall(self_, [uid = *uid, name, done](Social& social, CloudResult<std::string> code) {
             if (!code.ok()) return done(code.error());
             StudyGroup group;
             group.id = social.randomId();
             group.name = utf8::prefix(utf8::trim(name), StudyGroup::nameLimit);
             if (group.name.empty()) group.name = defaultGroupName;
             group.owner = uid;
             group.code = code.value();
             group.members = {uid};
             Firestore::Fields member =
                 social.statusFields(social.status ? social.status() : MyStatus{});
             member["code"] = group.code;
             std::vector<Firestore::Write> writes{
                 Firestore::Write::set(groupPath(group.id), {{"name", group.name},
                                                             {"owner", uid},
                                                             {"code", group.code},
                                                             {"members", Firestore::Array{uid}},
                                                             {"sessions", Firestore::Array{}},
                                                             {"createdAt", social.now()}}),
                 Firestore::Write::set(codePath(group.code), {{"gid", group.id}}),
                 Firestore::Write::set(memberPath(group.id, uid), member)};
             social.store_.commit(
                 std::move(writes),
                 weakCall(social.self_, [group, done](Social& s, std::optional<CloudError> error) {
                   if (error) return done(*error);
                   s.created(group, done);
                 }));
           }));
}

void Social::created(const StudyGroup& group, std::function<void(CloudResult<StudyGroup>)> done) {
  refresh(weakCall(self_, [group, done](Social& social) {
    const StudyGroup* loaded = findGroup(social.groups_, group.id);
    done(loaded ? *loaded : group);
  }));
}

void Social::join(const std::string& code, std::function<void(Joined)> done) {
  const auto uid = me();
  if (!uid) return done({std::nullopt, std::nullopt, CloudError::signedOut()});
  const std::string digits = digitsOf(code);
  if (digits.size() != 8) return done({std::nullopt, JoinError::notFound, std::nullopt});
  store_.get(codePath(digits),
             weakCall(self_, [uid = *uid, digits, done](
                                 Social& social, CloudResult<std::optional<Firestore::Doc>> found) {
               if (!found.ok()) return done({std::nullopt, std::nullopt, found.error()});
               const auto& doc = found.value();
               const auto gid = doc ? doc->fields.find("gid") : Firestore::Fields::const_iterator{};
               if (!doc || gid == doc->fields.end() || !gid->second.string()) {
                 return done({std::nullopt, JoinError::notFound, std::nullopt});
               }
               social.joinGroup(uid, digits, *gid->second.string(), done);
             }));
}

void Social::joinGroup(const std::string& uid, const std::string& code, const std::string& gid,
                       std::function<void(Joined)> done) {
  if (const StudyGroup* known = findGroup(groups_, gid)) return done({*known, {}, {}});
  Firestore::Fields member = statusFields(status ? status() : MyStatus{});
  member["code"] = code;
  std::vector<Firestore::Write> writes{
      Firestore::Write::set(memberPath(gid, uid), member),
      Firestore::Write::arrayUnion(groupPath(gid), "members", {uid})};
  store_.commit(std::move(writes),
                weakCall(self_, [gid, done](Social& social, std::optional<CloudError> error) {
                  if (error && error->kind == CloudError::Kind::http && error->status == 403) {
                    return done({std::nullopt, JoinError::full, std::nullopt});
                  }
                  if (error) return done({std::nullopt, std::nullopt, *error});
                  social.refresh(weakCall(social.self_, [gid, done](Social& s) {
                    const StudyGroup* joined = findGroup(s.groups_, gid);
                    if (!joined) return done({std::nullopt, JoinError::notFound, std::nullopt});
                    done({*joined, std::nullopt, std::nullopt});
                  }));
                }));
}

void Social::leave(const StudyGroup& group, CloudDone done) {
  const auto uid = me();
  if (!uid) return done(CloudError::signedOut());
  if (group.owner == *uid) return closeGroup(group, std::move(done));
  std::vector<Firestore::Write> writes{
      Firestore::Write::arrayRemove(groupPath(group.id), "members", {*uid}),
      Firestore::Write::erase(memberPath(group.id, *uid))};
  store_.commit(
      std::move(writes),
      weakCall(self_, [gid = group.id, done](Social& social, std::optional<CloudError> error) {
        if (!error) social.dropGroup(gid);
        done(error);
      }));
}

void Social::closeGroup(const StudyGroup& group, CloudDone done) {
  store_.list(groupPath(group.id) + "/members",
              weakCall(self_, [group, done](Social& social,
                                            CloudResult<std::vector<Firestore::Doc>> listed) {
                // Members that can't be listed stay behind as harmless orphans.
                std::vector<Firestore::Write> writes;
                if (listed.ok()) {
                  for (const auto& doc : listed.value()) {
                    writes.push_back(Firestore::Write::erase(memberPath(group.id, doc.id())));
                  }
                }
                writes.push_back(Firestore::Write::erase(codePath(group.code)));
                writes.push_back(Firestore::Write::erase(groupPath(group.id)));
                social.store_.commit(
                    std::move(writes),
                    weakCall(social.self_,
                             [gid = group.id, done](Social& s, std::optional<CloudError> error) {
                               if (!error) s.dropGroup(gid);
                               done(error);
                             }));
              }));
}

void Social::dropGroup(const std::string& gid) {
  std::erase_if(groups_, [&](const StudyGroup& g) { return g.id == gid; });
  members_.erase(gid);
  onChange.notify();
}

void Social::save(const StudyGroup& group, std::optional<std::string> name,
                  std::optional<std::vector<GroupSession>> sessions, CloudDone done) {
  if (!me()) return done(CloudError::signedOut());
  const std::string newName = name ? utf8::prefix(*name, StudyGroup::nameLimit) : group.name;
  std::vector<GroupSession> newSessions = sessions ? *sessions : group.sessions;
  if (newSessions.size() > StudyGroup::sessionLimit) newSessions.resize(StudyGroup::sessionLimit);
  std::vector<Firestore::Write> writes{Firestore::Write::update(
      groupPath(group.id),
      {{"name", newName}, {"sessions", sessionValues(newSessions)}, {"updatedAt", now()}},
      {"name", "sessions", "updatedAt"})};
  store_.commit(std::move(writes),
                weakCall(self_, [gid = group.id, newName, newSessions, done](
                                    Social& social, std::optional<CloudError> error) {
                  if (!error) {
                    for (StudyGroup& g : social.groups_) {
                      if (g.id != gid) continue;
                      g.name = newName;
                      g.sessions = newSessions;
                    }
                    social.onChange.notify();
                  }
                  done(error);
                }));
}

}  // namespace sodam
