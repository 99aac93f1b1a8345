#ifndef OV_SQL_EXECUTOR_ERRORS_DESTROYED_IN_TURN_HPP_
#define OV_SQL_EXECUTOR_ERRORS_DESTROYED_IN_TURN_HPP_

#include <memory>
namespace error_handling {

// A part of a tree that waits to be destroyed until the part that owned it is gone, so that trees of any depth can be
// destroyed on any stack. Base is what the owner knows of its parts, which it has as owned_part.
template <class Base>
class destroyed_in_turn : public Base {
 public:
  // The parts of a part go before those that wait already, in the order in which it lets go of them.
  void destroy() noexcept {
    if (end_of_parts_ != nullptr) {
      *end_of_parts_ = this;
      end_of_parts_ = &next_;
      return;
    }
    for (destroyed_in_turn* next = this; next != nullptr;) {
      destroyed_in_turn* const rest = next->next_;
      destroyed_in_turn* parts = nullptr;
      end_of_parts_ = &parts;
      delete next;
      *end_of_parts_ = rest;
      next = parts;
    }
    end_of_parts_ = nullptr;
  }

 private:
  // Of the part that is being destroyed; null where none is.
  static inline thread_local destroyed_in_turn** end_of_parts_ = nullptr;

  destroyed_in_turn* next_ = nullptr;
};

// Owns a part: one of this library, of class Own, or any other, which is destroyed at once.
template <class Base, class Own>
class owned_part {
 public:
  explicit owned_part(std::unique_ptr<Base> part) : part_(nullptr, destroyer{dynamic_cast<Own*>(part.get())}) {
    part_.reset(part.release());
  }

  const Base& operator*() const { return *part_; }
  const Base* operator->() const { return part_.get(); }

  // Null for any other.
  const Own* own() const { return part_.get_deleter().own; }

 private:
  struct destroyer {
    Own* own;

    void operator()(Base* part) const noexcept {
      if (own != nullptr) {
        own->destroy();
      } else {
        delete part;
      }
    }
  };

  std::unique_ptr<Base, destroyer> part_;
};

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_DESTROYED_IN_TURN_HPP_
