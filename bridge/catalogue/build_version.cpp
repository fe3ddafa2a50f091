#include "bridge/catalogue/build_version.h"

#include "bridge/catalogue/build_time.h"
#include "framework/std/date.h"

TAVString tav::getBuildVersion() {
  return "10.0.1 - " + TAVDate(getBuildTime()).getPstTimestamp();
}
