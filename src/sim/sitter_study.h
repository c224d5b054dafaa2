#pragma once

namespace sodam {

// What a studying sitter's hands do: rest on the desk, hold a phone low in
// both hands, prop the chin on one, or bring one to the mouth.
enum class SitterHands { rest, phone, chin, mouth };

}  // namespace sodam
