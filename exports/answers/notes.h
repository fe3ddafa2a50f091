#pragma once

// What every answer says beside itself: what it could not know, and what else is known of a name.

#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "exports/answers/shown_text.h"
#include "framework/std/json_writer.h"
#include "lineage/joined_graph.h"

namespace tav {

/// What could make the answer another one (see WalkGraph::notes); where models are named, each note once,
/// with the models that it is true of in front.
std::vector<std::string> answerNotes(const JoinedGraph& graph);

/// The notes at the end of an answer for people, below a blank line; nothing where there are none.
void writeNotes(const JoinedGraph& graph, std::ostream& out, const TextStyle& style = {});
/// The same for notes that are at hand.
void writeNotes(std::span<const std::string> notes, ShownText& text);
/// The same as the member "notes", a list of texts; left out where there are none.
void writeNotesJson(JsonWriter& json, const JoinedGraph& graph);

/// The members "name", "state" and, where there is one, "note" of a name that leads to nothing.
void writeOpenNameJson(JsonWriter& json, const OpenNameText& name);

}  // namespace tav
