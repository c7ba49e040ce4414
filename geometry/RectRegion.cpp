#include <kora/Utl.h>

#include <new>

#include "geometry/FreeArea.h"

namespace {

UtlPlatformRect platformRect(long left, long top, long right, long bottom) {
    return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(top), static_cast<std::int32_t>(right),
            static_cast<std::int32_t>(bottom)};
}

bool write(const std::optional<UtlPlatformRect>& found, UtlPlatformRect& r) {
    if (found) r = *found;
    return found.has_value();
}

void release(kora::FreeArea* area) {
    if (area != nullptr && --area->sharers == 0) delete area;
}

kora::FreeArea* shared(kora::FreeArea* area) {
    if (area != nullptr) ++area->sharers;
    return area;
}

// Answers an exported operation that has a platform rectangle for its result with an LRCT.
template <class Get>
bool reordered(LRCT& r, Get&& get) {
    UtlPlatformRect found;
    if (!get(found)) return false;
    r = {found.top, found.left, found.bottom, found.right};
    return true;
}

}  // namespace

UtlRectRegion::UtlRectRegion() : area_(nullptr) {}

UtlRectRegion::~UtlRectRegion() { release(area_); }

UtlRectRegion::UtlRectRegion(const UtlRectRegion& other) : area_(shared(other.area_)) {}

UtlRectRegion& UtlRectRegion::operator=(const UtlRectRegion& other) {
    kora::FreeArea* before = area_;
    area_ = shared(other.area_);
    release(before);
    return *this;
}

void UtlRectRegion::Add(LRCT& r) { Add(r.left, r.top, r.right, r.bottom); }

void UtlRectRegion::Add(UtlPlatformRect& r) { Add(r.left, r.top, r.right, r.bottom); }

void UtlRectRegion::Add(long left, long top, long right, long bottom) {
    if (area_ == nullptr) area_ = new (std::nothrow) kora::FreeArea;
    if (area_ == nullptr) return;
    kora::guarded([&] { area_->add(platformRect(left, top, right, bottom)); });
}

void UtlRectRegion::Sub(LRCT& r) { Sub(r.left, r.top, r.right, r.bottom); }

void UtlRectRegion::Sub(UtlPlatformRect& r) { Sub(r.left, r.top, r.right, r.bottom); }

void UtlRectRegion::Sub(long left, long top, long right, long bottom) {
    if (area_ == nullptr) return;
    kora::guarded([&] { area_->subtract(platformRect(left, top, right, bottom)); });
}

bool UtlRectRegion::GetClosest(LRCT& r, long width, long height, long h, long v) {
    return reordered(r, [&](UtlPlatformRect& found) { return GetClosest(found, width, height, h, v); });
}

bool UtlRectRegion::GetClosest(UtlPlatformRect& r, long width, long height, long h, long v) {
    if (area_ == nullptr) return false;
    return write(area_->closest(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height),
                                static_cast<std::int32_t>(h), static_cast<std::int32_t>(v)),
                 r);
}

bool UtlRectRegion::GetLargest(LRCT& r) {
    return reordered(r, [&](UtlPlatformRect& found) { return GetLargest(found); });
}

bool UtlRectRegion::GetLargest(UtlPlatformRect& r) {
    if (area_ == nullptr) return false;
    return write(area_->largest(), r);
}
