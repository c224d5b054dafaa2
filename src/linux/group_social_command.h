#pragma once
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

#include "linux/cloud_session.h"

namespace sodam {

// `sodamjari group create NAME | join CODE | leave [CODE] | list | status`:
// the study groups of the signed-in user, through the given cloud session.
// The records in the data directory give the numbers a create or join
// publishes; the state is "offline", since no program sits at the desk.
int runGroupSocial(CloudSession& session, const std::filesystem::path& dataDirectory,
                   const std::vector<std::string>& words, std::ostream& out, std::ostream& err);

}  // namespace sodam
