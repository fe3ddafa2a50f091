#pragma once

#include "framework/details/details.h"
#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"

/// Lets the Java importer read a tabular definition, and loads the model that it writes. The caller owns the
/// model; null when the importer's document holds none. Throws a TAVException when there is no Java, when the
/// importer fails, and when what it wrote is no saved model. The temporary folder is gone in any case.
TAVStoreModel* importTabularModel(TAVLog* log, const TAVFile& inputFile);

/// Adds to a model as the importer has written it what the importer leaves to the bridge, because XML
/// definitions need it too: what connection strings say of their data stores, and what SQL reads. Warnings go
/// to `log`, which may be null. What `details` say of objects that give way is said of those that stay.
void completeTabularModel(TAVStoreModel& model, TAVLog* log, tav::Details* details = nullptr);
