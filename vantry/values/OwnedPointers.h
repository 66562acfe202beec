// A vector of heap objects that it owns: deletes them when destroyed, clones them when copied.
// Internal to the library's sets; the elements' own Clone makes the copy deep.
#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

namespace QXVantry_920 {
namespace detail {

template <class T>
class OwnedPointers {
  public:
    OwnedPointers() = default;

    OwnedPointers(OwnedPointers const& other) {
        std::vector<std::unique_ptr<T>> clones;
        clones.reserve(other.fItems.size());
        for (T const* item : other.fItems) {
            clones.emplace_back(item->Clone());
        }
        fItems.reserve(clones.size());
        for (std::unique_ptr<T>& clone : clones) {
            fItems.push_back(clone.release());
        }
    }

    OwnedPointers& operator=(OwnedPointers const& other) {
        if (this != &other) {
            OwnedPointers copy(other);
            fItems.swap(copy.fItems);
        }
        return *this;
    }

    ~OwnedPointers() {
        for (T* item : fItems) {
            delete item;
        }
    }

    std::vector<T*> const& Items() const { return fItems; }
    std::size_t Size() const { return fItems.size(); }

    // Takes a non-null item over; null gives false.
    bool Append(T* item) {
        if (item == nullptr) {
            return false;
        }
        fItems.push_back(item);
        return true;
    }

    // Takes the item itself out without deleting it; false when it is not held.
    bool Release(T const* item) {
        for (auto it = fItems.begin(); it != fItems.end(); ++it) {
            if (*it == item) {
                fItems.erase(it);
                return true;
            }
        }
        return false;
    }

    // Whether an element equals the item under the element's operator==; false for null.
    bool ContainsEqual(T const* item) const {
        return item != nullptr && FindFirst([item](T const& held) { return held == *item; }) != nullptr;
    }

    // Deletes the first element equal to the item; false for null or no match.
    bool RemoveFirstEqual(T const* item) {
        return item != nullptr && RemoveFirst([item](T const& held) { return held == *item; });
    }

    // Deletes every element equal to the item; false for null or no match.
    bool RemoveAllEqual(T const* item) {
        return item != nullptr && RemoveAll([item](T const& held) { return held == *item; });
    }

    // Each element's Display, in order.
    void DisplayEach(std::ostream& out) const {
        for (T const* item : fItems) {
            item->Display(out);
        }
    }

    // The first element that satisfies the test, or null.
    template <class Test>
    T* FindFirst(Test test) const {
        for (T* item : fItems) {
            if (test(*item)) {
                return item;
            }
        }
        return nullptr;
    }

    // Deletes and takes out the first element that satisfies the test.
    template <class Test>
    bool RemoveFirst(Test test) {
        for (auto it = fItems.begin(); it != fItems.end(); ++it) {
            if (test(**it)) {
                std::unique_ptr<T> const doomed(*it);
                fItems.erase(it);
                return true;
            }
        }
        return false;
    }

    // Deletes and takes out every element that satisfies the test. All elements are tested before any
    // is deleted, so the test may refer to an element of this vector.
    template <class Test>
    bool RemoveAll(Test test) {
        std::vector<T*> kept, doomed;
        for (T* item : fItems) {
            (test(*item) ? doomed : kept).push_back(item);
        }
        fItems.swap(kept);
        for (T* item : doomed) {
            delete item;
        }
        return !doomed.empty();
    }

  private:
    std::vector<T*> fItems;
};

}  // namespace detail
}  // namespace QXVantry_920
