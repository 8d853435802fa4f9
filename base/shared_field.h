/// Plain fields that one thread writes while another reads them.
///
/// The filter's settings are ordinary members at fixed places, written by setters that take no lock. Every access from
/// the library goes through these, so that a setter and a running frame do not race.
#ifndef VLVK_BASE_SHARED_FIELD_H
#define VLVK_BASE_SHARED_FIELD_H

namespace vlvk {

template <class T>
T loadShared(const T& field) {
  return __atomic_load_n(&field, __ATOMIC_ACQUIRE);
}

template <class T>
void storeShared(T& field, T value) {
  __atomic_store_n(&field, value, __ATOMIC_RELEASE);
}

/// Stores `value` and returns what stood there before, as one step.
template <class T>
T exchangeShared(T& field, T value) {
  return __atomic_exchange_n(&field, value, __ATOMIC_ACQ_REL);
}

}  // namespace vlvk

#endif
