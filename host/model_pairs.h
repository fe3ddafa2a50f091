#pragma once

// Two folders or estates of models, one of which came of the other: which models belong together.

#include <functional>
#include <string>
#include <vector>

#include "exports/versions.h"
#include "host/map_option.h"
#include "host/message_log.h"
#include "lineage/model_diff.h"

namespace host {

/// A model of both, or of one of them.
struct ModelPair {
  std::string key;     ///< by which answers call it
  std::string before;  ///< what names it as an input; empty where it is not there
  std::string after;
};

/// Whether an input holds several models: a folder that is no definition by itself, or an estate.
bool holdsSeveral(const std::string& input);

/// Whether an input is a folder or an estate.
bool isPlace(const std::string& input);

/// The models of two places, ordered by their keys. Those of one path belong together; where the two have no
/// path in common, those that lie alike below the folder, or below the folder that all of an estate lie in.
std::vector<ModelPair> pairModels(const std::string& before, const std::string& after);

/// Compares a pair and tells `use` how the model changed; of one that is in one place only, without a
/// difference. Returns an exit code. Throws when one of the two cannot be read.
int comparePair(const ModelPair& pair, InputMaps& maps, MessageLog& log,
                const std::function<void(const tav::EstateChange& change, const tav::ModelDiff* diff)>& use);

}  // namespace host
