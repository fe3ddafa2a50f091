#!/usr/bin/env bash
# Shows that check_layout.sh finds every kind of fault, and nothing else, in a small tree made for it.
set -euo pipefail
check=$(dirname "$(realpath "${BASH_SOURCE[0]}")")/check_layout.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
mkdir -p framework/std framework/model host reader plugins exports
put() { printf '%s\n' "${@:2}" >"$1"; }

put framework/api.h '#pragma once'
put framework/std/text.h '#pragma once' '#include "framework/api.h"' '#include "framework/model/link.h"'
put framework/model/link.h '#pragma once' '#include "framework/std/text.h"' '#include <new>' 'T(const T&) = delete;'
put framework/model/link.cpp '#include "framework/model/link.h"' 'delete object;'
put framework/model/object.h '#pragma once' 'Owned<T> object(new T);' 'delete object;'
put reader/reader.h '// new names' '#include "framework/model/link.h"'
put reader/reader.cpp '#include "reader.h"' 'say("delete it");  // a new one' 'auto* a = new Reader;' 'new (place) T;'
put reader/other.cpp 'use(x);' 'if (dynamic_cast<T*>(x)) delete x;' '#include "reader/gone.h"'
put exports/list.cpp '// rawName' 'out << graph.rawPath(id);'
put host/main.cpp '#include "reader/reader.h"'
put host/string_util.h '#pragma once'
put host/utility.cpp
put directions.txt '# a table' 'framework/std:' 'framework/model: framework/std' 'reader: framework/*' 'exports:'

expected="framework/std/text.h: framework/std may not include from framework/model (framework/model/link.h)
host/main.cpp: the folder host has no line in the table of directions
reader/other.cpp: \"reader/gone.h\" is no path from the root
reader/reader.cpp: \"reader.h\" is no path from the root
framework/model/object.h:3: new and delete stand in framework/model alone
reader/other.cpp:2: new and delete stand in framework/model alone
reader/reader.cpp:3: new and delete stand in framework/model alone
reader/other.cpp:2: ask isInstanceOf or as<T> instead
exports/list.cpp:2: a raw text of the graph is not for showing
reader/reader.h: no #pragma once
host/string_util.h: a file is named after what it holds
host/utility.cpp: a file is named after what it holds"
if found=$(bash "$check" . directions.txt); then
  echo 'faults, but no failure' >&2
  exit 1
fi
diff <(echo "$expected") <(echo "$found")

put directions.txt 'framework/std: framework/model' 'framework/model: framework/std'
rm -r reader host exports framework/std framework/model/*.h
put framework/model/link.cpp
diff <(printf '%s\n' 'the table of directions: input contains a loop:' 'tsort: framework/model' 'tsort: framework/std') \
  <(bash "$check" . directions.txt)

put directions.txt 'framework/model:'
bash "$check" . directions.txt
