#include "commerce/product_internal.hpp"

namespace orbinel {

OrbinelProductInternal::OrbinelProductInternal(const OrbinelProductInternal& other) {
    const MutexLock lock(other.mutex_);
    mSummary_ = other.mSummary_;
    mIsProductValid_ = other.mIsProductValid_;
}

void OrbinelProductInternal::setProuctSummary(Dictionary summary) {
    const MutexLock lock(mutex_);
    mSummary_ = std::move(summary);
}

Dictionary OrbinelProductInternal::getProuctSummary() const {
    const MutexLock lock(mutex_);
    return mSummary_;
}

void OrbinelProductInternal::setProuctValidity(bool valid) {
    const MutexLock lock(mutex_);
    mIsProductValid_ = valid;
}

bool OrbinelProductInternal::isValid() const {
    const MutexLock lock(mutex_);
    return mIsProductValid_;
}

void OrbinelProductInternal::set(std::string_view key, Value value) {
    const MutexLock lock(mutex_);
    mSummary_.set(key, std::move(value));
}

}  // namespace orbinel
