#ifndef ZRCOMMON_STRINGS_TWO_WAY_H
#define ZRCOMMON_STRINGS_TWO_WAY_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zrcommon {

/// The occurrences of a pattern in a text, in order, by the two-way algorithm of Crochemore and
/// Perrin: the time is linear in both lengths whatever they hold, and no memory is needed. The
/// pattern is split at a critical position; its right part is compared forwards, then its left part
/// backwards.
template <typename Unit>
class TwoWaySearch {
 public:
  static constexpr std::size_t kNone = SIZE_MAX;

  /// @param length  at least 1
  TwoWaySearch(const Unit* text, std::size_t textLength, const Unit* pattern, std::size_t length)
      : text_(text), textLength_(textLength), pattern_(pattern), length_(length) {
    const Split byLess = split<false>();
    const Split byGreater = split<true>();
    const Split& last = byGreater.right > byLess.right ? byGreater : byLess;
    right_ = last.right;
    const bool isPeriodic = std::equal(pattern, pattern + right_, pattern + last.period);
    move_ = isPeriodic ? last.period : std::max(right_, length - right_ + 1);
    keptAfterMove_ = isPeriodic ? length - move_ : 0;
  }

  /// The index of the next occurrence, or kNone.
  std::size_t next() {
    while (at_ <= textLength_ && textLength_ - at_ >= length_) {
      const std::size_t here = at_;
      const std::size_t right = matchRight();
      if (right < length_) {
        at_ += right - right_ + 1;
        kept_ = 0;
        continue;
      }
      const bool isMatch = matchesLeft();
      at_ += move_;
      kept_ = keptAfterMove_;
      if (isMatch) return here;
    }
    return kNone;
  }

 private:
  struct Split {
    std::size_t right;   // index at which the right part begins
    std::size_t period;  // of the right part
  };

  // The greatest suffix of the pattern in dictionary order, or the least.
  template <bool kIsReversed>
  Split split() const {
    std::size_t best = 0;
    std::size_t period = 1;
    std::size_t same = 0;
    for (std::size_t other = 1; other + same < length_;) {
      const Unit x = pattern_[best + same];
      const Unit y = pattern_[other + same];
      if (x == y) {
        const bool isWholePeriod = ++same == period;
        if (!isWholePeriod) continue;
        other += period;
      } else if (kIsReversed ? x > y : x < y) {
        best = other++;
        period = 1;
      } else {
        other += same + 1;
        period = other - best;
      }
      same = 0;
    }
    return {best, period};
  }

  // The index in the pattern of the first difference after its left part; its length if none.
  std::size_t matchRight() const {
    std::size_t i = std::max(right_, kept_);
    while (i < length_ && pattern_[i] == text_[at_ + i]) ++i;
    return i;
  }

  bool matchesLeft() const {
    std::size_t i = right_;
    while (i > kept_ && pattern_[i - 1] == text_[at_ + i - 1]) --i;
    return i <= kept_;
  }

  const Unit* text_;
  std::size_t textLength_;
  const Unit* pattern_;
  std::size_t length_;
  std::size_t right_ = 0;
  std::size_t move_ = 0;           // distance to the next position after the right part matched
  std::size_t keptAfterMove_ = 0;  // length of the prefix that is known to match there
  std::size_t at_ = 0;
  std::size_t kept_ = 0;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_STRINGS_TWO_WAY_H
