#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace sodam {

// A fixed-size window of the latest values, without allocation.
template <typename T, std::size_t N>
class RecentWindow {
 public:
  void push(const T& value) {
    items_[(start_ + size_) % N] = value;
    if (size_ < N) {
      ++size_;
    } else {
      start_ = (start_ + 1) % N;
    }
  }
  void clear() { start_ = size_ = 0; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const T& operator[](std::size_t i) const { return items_[(start_ + i) % N]; }
  std::vector<T> values() const {
    std::vector<T> out;
    out.reserve(size_);
    for (std::size_t i = 0; i < size_; ++i)
      out.push_back((*this)[i]);
    return out;
  }

 private:
  std::array<T, N> items_{};
  std::size_t start_ = 0;
  std::size_t size_ = 0;
};

}  // namespace sodam
