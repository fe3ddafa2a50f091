#!/usr/bin/env bash
# check_git_recipes.sh PROGRAM ROOT: runs what docs/inputs.md says of git in a repository, and compares what is shown with
# what should be.
set -euo pipefail
program=$(realpath "$1")
root=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/repository"
export LC_ALL=C HOME=$work PATH="$work/bin:${program%/*}:$PATH" GIT_CONFIG_NOSYSTEM=1 GIT_PAGER=cat TMPDIR=$work
cd "$work"

# The indented blocks of the section, each in a file of its own.
sed -n '/^## Git$/,/^## /p' "$root/docs/inputs.md" | sed "s,/tmp/before,$work/before,g" |
  awk '/^    / { if (!inside) ++count; inside = 1; print substr($0, 5) >("block-" count); next } NF { inside = 0 }'
[ "$(ls block-*)" = "$(printf 'block-%s\n' 1 2 3 4 5)" ]

cd repository
git init -q
git config user.name Somebody
git config user.email somebody@huts.example
cp "$work/block-3" .gitattributes
cp "$work/block-4" "$work/bin/definition-text"
chmod +x "$work/bin/definition-text"
bash -e "$work/block-5"

cp "$root/examples/lost-property-create.xmla" cube.xmla
mkdir shop
printf 'table Sale\n\tmeasure Takings = 1\n\tcolumn Price\n\t\tdataType: double\n' >shop/sale.tmdl
git add -A
git commit -qm 'First'
sed -i 's/Takings/Receipts/' shop/sale.tmdl
sed -i 's,<Name>Days Kept</Name>,<Name>Days Waited</Name>,' cube.xmla
{
  echo '== a file and its last commit'
  bash "$work/block-1" 2>/dev/null || true
  echo '== what git diff shows'
  git diff --word-diff=porcelain --word-diff-regex='"[^"]*"' -U0 cube.xmla | grep '^[-+]"'
} >"$work/transcript"
git commit -qam 'Second'
{
  echo '== two revisions of a folder'
  bash -e "$work/block-2" 2>/dev/null | grep -v '^HEAD is now at'
  git worktree list | wc -l
} >>"$work/transcript"
diff -u "$root/tests/host/git_recipes.txt" "$work/transcript"
