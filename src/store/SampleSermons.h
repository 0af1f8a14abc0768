#pragma once

#include "model/SermonNote.h"
#include "store/SampleSermonDefinition.h"

#include <vector>

namespace quillon::store {

/// The authored samples shipped with the program, in the order they are listed.
const std::vector<SampleSermonDefinition>& sampleSermonDefinitions();

/// One sample as a sermon: its fixed identity, title, series, manuscript and the outline of its
/// authored topics, every reference parsed into a scripture (an insight is kept with its sub-topic's
/// details). Topic, sub-topic and scripture identities are derived from the sample's identity, so
/// building twice gives the same sermon apart from the dates, which are `now`.
model::SermonNote buildSampleSermon(const SampleSermonDefinition& definition, model::DateTime now);
std::vector<model::SermonNote> buildSampleSermons(model::DateTime now);

/// True for the identity of one of the shipped samples.
bool isSampleSermon(const model::Uuid& id);

} // namespace quillon::store
