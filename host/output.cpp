#include "host/output.h"

#include "framework/serialization/replacing_file.h"
#include "host/standard_output.h"

namespace host {

void writeOutput(const std::string& output, const std::function<void(std::ostream& out)>& write) {
  if (output == "-") {
    StandardOutput out;
    write(out.stream());
    out.finish();
  } else {
    tav::ReplacingFile out{TAVString(output)};
    write(out.stream());
    out.commit();
  }
}

}  // namespace host
