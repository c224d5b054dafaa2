#pragma once

#include <optional>

#include "cloud/firestore.h"
#include "cloud/study_group.h"

namespace sodam {

// How study groups, their sessions and their members' statuses read from and
// write to the shared documents. Reading is lenient: a missing or mistyped
// field keeps its default, and numbers accept either kind.
struct GroupDocuments {
  static StudyGroup group(const Firestore::Doc& doc);
  static Member member(const Firestore::Doc& doc);
  // A map without `id` or `start` gives nothing.
  static std::optional<GroupSession> session(const Firestore::Fields& fields);
  static Firestore::Value session(const GroupSession& session);
  static Firestore::Value look(const MateLook& look);
};

}  // namespace sodam
