#!/usr/bin/env bash
# In the project's folder: docs/quirks.md has a row for each file with a [sic], and says how many there are.
set -euo pipefail
found=$(grep -rcF '[sic]' include src platform words | grep -v ':0$' | LC_ALL=C sort)
# shellcheck disable=SC2016  # the backticks are the page's
told=$(sed -nE 's/^\| `([^`]+)` \| ([0-9]+) \| .*/\1:\2/p' docs/quirks.md | LC_ALL=C sort)
(($(wc -l <<<"$found") > 10)) || { echo "found only: $found"; exit 1; }
diff <(echo "$told") <(echo "$found") || {
  echo "docs/quirks.md, last table: < says the page, > is in the code"
  exit 1
}
