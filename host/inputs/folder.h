#pragma once

#include <string>
#include <vector>

namespace host {

/// The definitions that make a folder one: itself, if it holds a semantic model, or the projects and the
/// folders of semantic models in it, among them such as cannot be listed. In the order of their names.
std::vector<std::string> definitionsIn(const std::string& folder);

/// Every definition in a folder and the folders below it, each once: projects, without their own files and
/// what was built of them; semantic models; other files that begin like a definition. Links are followed, to
/// each place once; what is no regular file, what is hidden and reports are passed over. A folder that cannot
/// be listed, and a file that is called like a definition and cannot be read, stand among them, so that
/// whoever reads them tells why they are lost.
std::vector<std::string> definitionsBelow(const std::string& folder);
/// The same, and saved models.
std::vector<std::string> modelsBelow(const std::string& folder);

/// The files that a definition in TMDL consists of, from below its folder, in the order of their paths.
std::vector<std::string> partsOfDefinition(const std::string& folder);

}  // namespace host
