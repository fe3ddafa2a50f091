#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tav::bench {

struct Programs {
  std::filesystem::path import;  ///< xmla-bridge
  std::filesystem::path parse;   ///< parse-definition
};

/// A table of imports beside `xmllint --noout` on the same file, both in processor time, with the parts that
/// an import consists of.
class BesideXmllint {
 public:
  /// `most` imports take that many times the time of xmllint, and that many times the memory of the file.
  struct Bounds {
    double time = 1;
    double memory = 6;
  };

  BesideXmllint(Programs programs, std::filesystem::path folder, unsigned repeat, Bounds bounds);

  void printHead(const std::string& what) const;
  /// One line of the table; false when a bound is not kept.
  bool printFile(const std::string& name, const std::filesystem::path& file) const;
  /// Lines for all definitions in XML of at least a megabyte below a folder.
  bool printSamples(const std::filesystem::path& samples) const;

 private:
  Programs programs_;
  std::filesystem::path folder_;  // where models are written
  unsigned repeat_;
  Bounds bounds_;
};

}  // namespace tav::bench
