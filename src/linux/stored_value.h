#pragma once

// How each kind of settings value lies in a row of the Linux store: a type
// name beside a plain SQLite value, so that the database reads well in the
// sqlite3 tool. A bool, an integer and a double are SQLite numbers; a string
// is text; a string array and an integer dictionary are JSON text; a date is
// a real number of seconds since 2001-01-01; data is a blob.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/defaults.h"

namespace sodam::stored {

// Data too large to lie whole in its row; the row lists its pieces.
inline constexpr std::string_view dataPieces = "data pieces";

// One SQLite value: NULL, integer, real, text or blob.
using Column = std::variant<std::monostate, std::int64_t, double, std::string, Bytes>;

struct Row {
  std::string type;
  Column value;
};

// False for a number that is not finite, which no row holds.
bool representable(const DefaultsValue& value);
// The row of a value. A number that is not finite has no row: the key is
// cleared instead, as a failed encoding clears it on every platform.
std::optional<Row> rowOf(const DefaultsValue& value);
// The value of a row; nothing when the row is damaged: an unknown type, or
// a value that does not fit it. Pieced data is assembled by the caller.
std::optional<DefaultsValue> valueOf(const Row& row);

}  // namespace sodam::stored
