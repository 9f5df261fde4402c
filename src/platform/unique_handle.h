// One owner for every kind of handle that is closed by a call: move-only,
// copy deleted, closed exactly once. The kind is a traits type that says
// what the handle is, which value means "none" and how it is closed:
//
//   struct Traits {
//     using Handle = ...;
//     static Handle Invalid() noexcept;      // the value of no handle
//     static bool Close(Handle h) noexcept;  // true when closing went well
//   };
//
// Portable on purpose, so its rules are tested natively too; the Windows
// kinds (kernel objects, files, find handles, themes) are in
// handle_win32.h. Non-owning uses take the raw handle from Get().
#pragma once

#include <utility>

namespace qm {

template <typename Traits>
class UniqueHandle {
 public:
  using Handle = typename Traits::Handle;

  UniqueHandle() noexcept = default;
  explicit UniqueHandle(Handle h) noexcept : h_(h) {}
  ~UniqueHandle() { Reset(); }
  UniqueHandle(UniqueHandle&& other) noexcept : h_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;

  Handle Get() const noexcept { return h_; }
  bool Valid() const noexcept { return h_ != Traits::Invalid(); }
  explicit operator bool() const noexcept { return Valid(); }

  // Closes the handle held (if any) and takes h.
  void Reset(Handle h = Traits::Invalid()) noexcept {
    const Handle old = std::exchange(h_, h);
    if (old != Traits::Invalid()) Traits::Close(old);
  }
  // Closes now and tells whether closing went well (a file's last write
  // can fail at its close); true when nothing was held.
  bool Close() noexcept {
    const Handle old = std::exchange(h_, Traits::Invalid());
    return old == Traits::Invalid() || Traits::Close(old);
  }
  // Gives the handle up without closing it: the caller owns it now.
  Handle Release() noexcept { return std::exchange(h_, Traits::Invalid()); }

 private:
  Handle h_ = Traits::Invalid();
};

}  // namespace qm
