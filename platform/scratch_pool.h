// Working memory that is kept from call to call.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace dxf2d {

// Lends objects that calls use in turn; as many exist as calls ran at once. Safe to use from
// several threads. A pool and not an object for each thread: on Windows a library whose threads
// have objects that must be destroyed is not unloaded before they end.
template <class Object>
class ScratchPool {
 public:
  // One object, back in the pool at the end of the scope.
  class Loan {
   public:
    explicit Loan(ScratchPool& pool) : pool_(pool), object_(pool.Take()) {}
    ~Loan() { pool_.Return(std::move(object_)); }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

    Object& operator*() const { return *object_; }

   private:
    ScratchPool& pool_;
    std::unique_ptr<Object> object_;
  };

  // Destroys the objects that are not lent.
  void Clear() {
    const std::lock_guard lock(mutex_);
    made_ -= idle_.size();
    std::vector<std::unique_ptr<Object>>().swap(idle_);
    idle_.reserve(made_);
  }

 private:
  std::unique_ptr<Object> Take() {
    const std::lock_guard lock(mutex_);
    if (idle_.empty()) {
      // Room for all there are, so that returning one needs no memory.
      idle_.reserve(made_ + 1);
      auto object = std::make_unique<Object>();
      ++made_;
      return object;
    }
    std::unique_ptr<Object> object = std::move(idle_.back());
    idle_.pop_back();
    return object;
  }
  void Return(std::unique_ptr<Object> object) noexcept {
    const std::lock_guard lock(mutex_);
    idle_.push_back(std::move(object));
  }

  std::mutex mutex_;
  std::vector<std::unique_ptr<Object>> idle_;
  std::size_t made_ = 0;
};

}  // namespace dxf2d
