#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

namespace kora {

/// Elements in a row, addressed by their number: what the rows of a sheet, its columns and the cells of a row are kept
/// in. Elements are moved as bytes, and made blank by value initialisation.
template <class Element>
class NumberedList {
    static_assert(std::is_trivially_copyable_v<Element>);

public:
    static constexpr int kMost = 32767;  ///< a count has to fit 16 bits, signed

    NumberedList() = default;
    NumberedList(NumberedList&& other) noexcept
        : elements_(std::move(other.elements_)), count_(other.count_), room_(other.room_) {
        other.count_ = other.room_ = 0;
    }
    NumberedList& operator=(const NumberedList&) = delete;

    int count() const { return count_; }
    bool holds(int n) const { return static_cast<unsigned>(n) < static_cast<unsigned>(count_); }
    /// @p n must be held.
    Element& operator[](int n) { return elements_[static_cast<std::size_t>(n)]; }
    const Element& operator[](int n) const { return elements_[static_cast<std::size_t>(n)]; }
    Element* begin() { return elements_.get(); }
    Element* end() { return elements_.get() + count_; }

    /// Makes room for @p wanted elements; @p ahead is how many to make room for at once if it is the first time. False,
    /// with nothing changed, when there is no memory or they would be more than kMost.
    bool reserve(int wanted, int ahead = 0) {
        if (wanted <= room_) return true;
        if (wanted > kMost) return false;
        const int room = std::min(kMost, std::max(wanted, room_ == 0 ? ahead : 2 * room_));
        std::unique_ptr<Element[]> elements(new (std::nothrow) Element[static_cast<std::size_t>(room)]);
        if (elements == nullptr) return false;
        std::copy_n(elements_.get(), count_, elements.get());
        elements_ = std::move(elements);
        room_ = room;
        return true;
    }

    /// Blank elements in front of element @p n, for which there must be room.
    void insert(int n, int howMany = 1) {
        Element* const place = begin() + n;
        std::copy_backward(place, end(), end() + howMany);
        std::fill_n(place, howMany, Element{});
        count_ += howMany;
    }

    /// Blank elements behind the last up to @p count, as reserve() can.
    bool extend(int count, int ahead = 0) {
        if (!reserve(count, ahead)) return false;
        if (count > count_) insert(count_, count - count_);
        return true;
    }

    void remove(int first, int howMany) {
        std::copy(begin() + first + howMany, end(), begin() + first);
        count_ -= howMany;
    }

    /// Element @p from becomes element @p to; those between move up.
    void move(int from, int to) {
        Element* const all = begin();
        if (from < to)
            std::rotate(all + from, all + from + 1, all + to + 1);
        else
            std::rotate(all + to, all + from, all + from + 1);
    }

    void clear() {
        elements_.reset();
        count_ = room_ = 0;
    }

private:
    std::unique_ptr<Element[]> elements_;
    int count_ = 0;
    int room_ = 0;
};

}  // namespace kora
