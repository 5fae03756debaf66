#pragma once

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

/// Stand-in for the host SDK's growing array. Copies share one buffer until one of them is changed,
/// or handed out for changing by an operation that is not const.
template <class T>
class OdArray {
public:
    using size_type = unsigned;
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    OdArray() = default;
    OdArray(std::initializer_list<T> items) : items_(std::make_shared<std::vector<T>>(items)) {}

    size_type size() const { return static_cast<size_type>(items_ ? items_->size() : 0); }
    size_type length() const { return size(); }
    bool empty() const { return size() == 0; }
    bool isEmpty() const { return empty(); }

    const T& operator[](size_type index) const { return (*items_)[index]; }
    T& operator[](size_type index) { return Own()[index]; }
    // Neither is for an empty array.

    const T& last() const { return items_->back(); }
    void removeLast() { Own().pop_back(); }

    void append(const T& item) { Own().push_back(item); }
    void push_back(const T& item) { append(item); }
    void clear() { items_.reset(); }
    void reserve(size_type count) { Own().reserve(count); }

    const T* asArrayPtr() const { return items_ ? items_->data() : nullptr; }
    T* asArrayPtr() { return items_ ? Own().data() : nullptr; }
    const_iterator begin() const { return asArrayPtr(); }
    const_iterator end() const { return asArrayPtr() + size(); }
    iterator begin() { return asArrayPtr(); }
    iterator end() { return asArrayPtr() + size(); }

    bool operator==(const OdArray& other) const {
        return items_ == other.items_ ||
               (size() == other.size() && (empty() || *items_ == *other.items_));
    }

private:
    /// The buffer, this array's alone.
    std::vector<T>& Own() {
        if (!items_) {
            items_ = std::make_shared<std::vector<T>>();
        } else if (items_.use_count() > 1) {
            items_ = std::make_shared<std::vector<T>>(std::as_const(*items_));
        }
        return *items_;
    }

    std::shared_ptr<std::vector<T>> items_;
};
