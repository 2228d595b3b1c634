#pragma once

#include <cstddef>
#include <utility>

namespace KWCommonNS {

/// Smart pointer to a counted object: holds one reference for as long as it points there.
///
/// `T` has `addRef() const` and `release() const` (KWRCObject). Different KWPtr to one object may
/// be used from different threads; one KWPtr belongs to one thread at a time.
template <typename T>
class KWPtr {
public:
    KWPtr() noexcept = default;
    KWPtr(std::nullptr_t) noexcept {}
    /// Takes a reference of its own to `object`, which may be null.
    explicit KWPtr(T* object) noexcept : object_(object) { retain(); }
    KWPtr(const KWPtr& other) noexcept : object_(other.object_) { retain(); }
    KWPtr(KWPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <typename U>
    KWPtr(const KWPtr<U>& other) noexcept : object_(other.get()) {
        retain();
    }
    ~KWPtr() { drop(); }

    KWPtr& operator=(const KWPtr& other) noexcept {
        KWPtr(other).swap(*this);
        return *this;
    }
    KWPtr& operator=(KWPtr&& other) noexcept {
        KWPtr(std::move(other)).swap(*this);
        return *this;
    }
    KWPtr& operator=(T* object) noexcept {
        KWPtr(object).swap(*this);
        return *this;
    }
    KWPtr& operator=(std::nullptr_t) noexcept {
        reset();
        return *this;
    }

    /// Lets go of the object and points nowhere.
    void reset() noexcept { KWPtr().swap(*this); }
    void swap(KWPtr& other) noexcept { std::swap(object_, other.object_); }

    T* get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    template <typename U>
    bool operator==(const KWPtr<U>& other) const noexcept {
        return object_ == other.get();
    }
    bool operator==(std::nullptr_t) const noexcept { return object_ == nullptr; }

private:
    void retain() const noexcept {
        if (object_ != nullptr)
            object_->addRef();
    }
    void drop() noexcept {
        if (object_ != nullptr)
            object_->release();
    }

    T* object_ = nullptr;
};

} // namespace KWCommonNS
