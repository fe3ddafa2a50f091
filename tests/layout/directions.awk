# Judges who uses whom: -v table=FILE, the table of directions, -v verb=TEXT for messages, and lines "FILE|FILE that
# it uses|as written there", or "FILE" for one that must have a room. Prints the faults.

# The folder that a file belongs to: the innermost around it that has a line of its own, or else its own.
function room(path,   folder) {
  if (path in rooms) return rooms[path]
  folder = path ~ /\// ? path : "./" path
  sub(/\/[^\/]*$/, "", folder)
  rooms[path] = folder
  while (!(folder in known) && sub(/\/[^\/]*$/, "", folder)) {}
  if (folder in known) rooms[path] = folder
  return rooms[path]
}

# "folder/*" in the table is the folder with all below it.
function allowed(from, to) {
  if (from == to || (from, to) in uses) return 1
  do if ((from, to "/*") in uses) return 1; while (sub(/\/[^\/]*$/, "", to))
  return 0
}

function exists(path,   ignored) {
  if (!(path in found)) {
    found[path] = (getline ignored < path) >= 0
    close(path)
  }
  return found[path]
}

BEGIN {
  while ((getline line < table) > 0) {
    if (line ~ /^#/ || line == "") continue
    count = split(line, word, /[: ]+/)
    known[word[1]] = 1
    for (i = 2; i <= count; ++i) if (word[i] != "") uses[word[1], word[i]] = 1
  }
  FS = "|"
}
{
  from = room($1)
  if (!(from in known)) {
    if (!(from in told)) print $1 ": the folder " from " has no line in the table of directions"
    told[from] = 1
  } else if (NF > 1 && !exists($2))
    print $1 ": \"" $3 "\" is no file of the tree"
  else if (NF > 1 && !allowed(from, room($2)))
    print $1 ": " from " may not " verb " " room($2) " (" $3 ")"
}
