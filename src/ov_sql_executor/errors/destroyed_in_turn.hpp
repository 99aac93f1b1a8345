#ifndef OV_SQL_EXECUTOR_ERRORS_DESTROYED_IN_TURN_HPP_
#define OV_SQL_EXECUTOR_ERRORS_DESTROYED_IN_TURN_HPP_

#include <utility>

namespace error_handling {

// A part of a tree that waits to be destroyed until the part that owned it is gone, so that trees of any depth can be
// destroyed on any stack. Base is what the owner knows of its parts; in_turn is the deleter of the owner's pointers.
template <class Base>
class destroyed_in_turn : public Base {
 public:
  void destroy() noexcept {
    next_ = std::exchange(waiting_, this);
    if (std::exchange(is_destroying_, true)) return;
    while (waiting_ != nullptr) delete std::exchange(waiting_, waiting_->next_);
    is_destroying_ = false;
  }

 private:
  static inline thread_local destroyed_in_turn* waiting_ = nullptr;
  static inline thread_local bool is_destroying_ = false;

  destroyed_in_turn* next_ = nullptr;
};

// Parts that are not of this library are destroyed at once.
struct in_turn {
  template <class Base>
  void operator()(Base* part) const noexcept {
    if (auto* const own = dynamic_cast<destroyed_in_turn<Base>*>(part)) {
      own->destroy();
    } else {
      delete part;
    }
  }
};

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_DESTROYED_IN_TURN_HPP_
