#pragma once

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

/// Stand-in for the host SDK's growing array. Copies share one buffer until a function that is not
/// const is called on one of them.
template <class T>
class OdArray {
public:
    OdArray() = default;
    OdArray(std::initializer_list<T> items) : items_(std::make_shared<std::vector<T>>(items)) {}

    unsigned size() const { return static_cast<unsigned>(items_ ? items_->size() : 0); }
    bool isEmpty() const { return size() == 0; }

    const T& operator[](unsigned index) const { return (*items_)[index]; }
    T& operator[](unsigned index) { return Own()[index]; }

    void append(const T& item) { Own().push_back(item); }

    const T* begin() const { return items_ ? items_->data() : nullptr; }
    const T* end() const { return begin() + size(); }
    T* begin() { return items_ ? Own().data() : nullptr; }
    T* end() { return begin() + size(); }

    bool operator==(const OdArray& other) const {
        return items_ == other.items_ ||
               (size() == other.size() && (isEmpty() || *items_ == *other.items_));
    }

private:
    /// The buffer, which no other array shares any more.
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
