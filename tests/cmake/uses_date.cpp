// Compiled as GNU C++20 by the add_subdirectory check.
#include "support/date.h"

int main() {
  return sodam::Date::fromUnix(0).unixSeconds() == 0 ? 0 : 1;
}
