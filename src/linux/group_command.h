#pragma once
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

class CloudSession;

// The study groups' own verbs (create, join, leave, list, status), handed the
// session, the data directory and the words from the verb on.
using GroupVerbs = int (*)(CloudSession& session, const std::filesystem::path& dataDirectory,
                           const std::vector<std::string>& words, std::ostream& out,
                           std::ostream& err);

// `sodamjari group signin [google|apple] | signout | VERB… [--data-dir DIR]`:
// the cloud session of the study groups, against the hosts the build was
// configured with; the other verbs go to `verbs` when given.
int runGroup(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
             GroupVerbs verbs = nullptr);

}  // namespace sodam
