#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "platform/defaults.h"
#include "posture/posture_log.h"

namespace sodam {

// The stored form of the posture log: one JSON array of entries, as
// {"t":…,"k":"alert","i":["slouch"],"m":{"tilt":…,"close":…}}, absent
// snapshot fields left out.
//
// A save writes the whole month, and formatting tens of thousands of numbers
// anew takes longer than writing the file. So the text of every entry's
// numbers is kept, in the entries' order, and a save formats only the
// newest entry's; the keys and names are written from the entries. Only the
// numbers are kept, not the whole text, which would double the log's memory.
class PostureLogText {
 public:
  // Formats the numbers of an entry appended to the log.
  void append(const PostureEntry& entry);
  // Forgets the numbers of the first `count` entries, about to be removed.
  void dropFront(const std::deque<PostureEntry>& entries, std::size_t count);
  void rebuild(const std::deque<PostureEntry>& entries);
  // The JSON array of the entries whose numbers this holds, in order.
  Bytes encode(const std::deque<PostureEntry>& entries) const;

 private:
  // Per number: one length byte, then the characters.
  std::vector<char> pool_;
  // Where the first live entry's numbers start; the space before is given
  // back once it is a sixteenth of the pool, so that, growing by an eighth,
  // the pool never holds much more than the live entries need.
  std::size_t head_ = 0;
  std::size_t textBytes_ = 0;
};

}  // namespace sodam
