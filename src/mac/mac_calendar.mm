#include "mac/mac_calendar.h"

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace sodam {

Calendar systemCalendar() {
  NSTimeZone* local = NSTimeZone.localTimeZone;
  // The zone's data is the zone database's own file, which the core reads.
  NSData* data = local.data;
  const char* named = local.name.UTF8String;
  const std::string name = named ? named : "";
  if (data.length > 0) {
    const std::string_view bytes(static_cast<const char*>(data.bytes), data.length);
    if (auto zone = TimeZone::fromTzif(bytes, name)) return Calendar(*zone);
  }
  if (auto zone = TimeZone::load("/etc/localtime", name)) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

}  // namespace sodam
