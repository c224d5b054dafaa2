#pragma once

namespace sodam {

// What a studying sitter's hands do: whatever the body's arms do (in the lap
// unless stretching), rest on the desk by a book, hold a phone low in both
// hands, prop the chin on the right hand, or bring the left hand to the mouth.
enum class SitterHands { lap, desk, phone, chin, mouth };

}  // namespace sodam
