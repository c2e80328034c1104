#pragma once

#include "sync/Device.h"

namespace nimbrelle {

/// One thing that a learner does on a device, chosen by `seed`: any operation of the store or a change of the
/// study settings, on a small stock of words, sentences and sites so that devices often meet the same.
void learn(Device &device, quint32 seed);

} // namespace nimbrelle
