#!/usr/bin/env bash
# Shows that check_layout.sh finds every kind of fault, and nothing else, in a small tree made for it.
set -euo pipefail
check=$(dirname "$(realpath "${BASH_SOURCE[0]}")")/check_layout.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
put() { mkdir -p "$(dirname "$1")" && printf '%s\n' "${@:2}" >"$1"; }

put framework/api.h '#pragma once'
put framework/std/text.h '#pragma once' '#include "framework/api.h"' '#include "framework/model/link.h"'
put framework/model/link.h '#pragma once' '#include "framework/std/text.h"' '#include <new>' 'T(const T&) = delete;'
put framework/model/link.cpp '#include "framework/model/link.h"' 'delete object;'
put framework/model/object.h '#pragma once' 'Owned<T> object(new T);' 'delete object;'
put reader/reader.h '// new names' '#include "framework/model/link.h"'
put reader/reader.cpp '#include "reader.h"' 'say("delete it");  // a new one' 'auto* a = new Reader;' 'new (place) T;'
put reader/other.cpp 'use(x);' 'if (dynamic_cast<T*>(x)) delete x;' '#include "reader/gone.h"'
put host/main.cpp '#include "reader/reader.h"'
put host/string_util.h '#pragma once'
put host/utility.cpp '#pragma once' '#include <CLI/App.hpp>'
put host/command_line.cpp '#include <CLI/App.hpp>'
put page/main.ts '// import { no } from "./gone";' 'import {' '  a,' '} from "./parts/a";' 'import "./parts/gone";'
put page/parts/a.ts 'import type { B } from "./b";' 'const text = "from \"../main\"";' 'import x from "library";'
put page/parts/b.ts 'export { a } from "./a";' 'import "../frame";'
put page/frame.ts
put page/parts/b.d.ts 'import { c } from "./c.mjs";'
put page/parts/c.mjs
put java/Outer.java 'import java.inner.Inner;  // the Other' '/** Beside {@link Other}. */' 'use(Inner.of("Other"));'
put java/Other.java '/* Outer' ' * Outer */' 'final class Other { Third third; }'
put java/Third.java 'Other other;'
put java/inner/Inner.java '/** Of Other. */ class Inner {' '  Other other;'
put setup.sh '. scripts/steps.sh' 'echo . java/none.sh'
put scripts/steps.sh '# . gone.sh' '  source "$root/setup.sh"'
put build/made.h '#include "gone.h"'
put page/node_modules/a/a.ts 'import "./gone";'
put directions.txt '# a table' 'framework:' 'framework/std: framework' 'framework/model: framework framework/std' \
  'reader: framework/*' 'page: page/*' 'page/parts:' 'java: java/inner' 'java/inner:' 'scripts:' '.: scripts'

expected="host/command_line.cpp: the folder host has no line in the table of directions
framework/std/text.h: framework/std may not include from framework/model (framework/model/link.h)
reader/other.cpp: \"reader/gone.h\" is no file of the tree
reader/reader.cpp: \"reader.h\" is no file of the tree
page/main.ts: \"./parts/gone\" is no file of the tree
page/parts/b.ts: page/parts may not include from page (../frame)
java/inner/Inner.java: java/inner may not include from java (Other)
scripts/steps.sh: scripts may not include from . (setup.sh)
a circle of files: framework/model/link framework/std/text
a circle of files: java/Other java/Third
a circle of files: page/parts/a page/parts/b
a circle of files: scripts/steps setup
framework/model/object.h:3: new and delete stand in framework/model alone
reader/other.cpp:2: new and delete stand in framework/model alone
reader/reader.cpp:3: new and delete stand in framework/model alone
reader/other.cpp:2: ask isInstanceOf or as<T> instead
host/utility.cpp:2: include host/command_line.h instead
reader/reader.h: no #pragma once
host/string_util.h: a file is named after what it holds
host/utility.cpp: a file is named after what it holds"
if found=$(bash "$check" . directions.txt); then
  echo 'faults, but no failure' >&2
  exit 1
fi
diff <(echo "$expected") <(echo "$found")

put directions.txt 'framework/std: framework/model' 'framework/model: framework/std'
find . -mindepth 1 -maxdepth 1 ! -name directions.txt -exec rm -r {} +
put framework/model/link.cpp
diff <(echo 'the table of directions has a circle: framework/model framework/std') <(bash "$check" . directions.txt)

put directions.txt 'framework/model:'
bash "$check" . directions.txt
