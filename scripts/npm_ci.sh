#!/usr/bin/env bash
# npm_ci.sh NPM: installs what package-lock.json names here. Says nothing when that succeeds; otherwise npm's
# own words, and what can be done.
set -euo pipefail
npm=$1
"$npm" ci --ignore-scripts --no-audit --no-fund --loglevel=error >&2 && exit
cat >&2 <<'END'

npm could not install the packages that package-lock.json names; its own words are above.
Behind a proxy:            npm config set proxy http://HOST:PORT
                           npm config set https-proxy http://HOST:PORT
With a registry inside:    npm config set registry https://HOST/PATH/
To see what is set:        npm config list
Then call the same command again: it goes on where it stopped.
END
exit 1
