#!/usr/bin/env bash
# manpage.sh DOCUMENT VERSION DATE [SECTIONS]: the manual page diags(1), made from docs/diags.md and from the
# command's own grammar, as "diags manual" writes it to the file SECTIONS, so that there is one text of each to
# keep right. It knows the Markdown that the document is written in: headings, paragraphs,
# lists, tables (the first column becomes what is explained), blocks of code, code, bold type and links.
set -euo pipefail
document=$1 version=$2 date=$3 sections=${4:-/dev/null}

awk -v version="$version" -v date="$date" '
# Text as roff takes it literally.
function plain(text) {
  gsub(/\\/, "\\e", text)
  gsub(/-/, "\\-", text)
  return text
}

# A line of text: code and bold words in bold type, links as their words.
function styled(text,   parts, count, i, result) {
  while (match(text, /\[[^]]*\]\([^)]*\)/)) {
    link = substr(text, RSTART, RLENGTH)
    sub(/^\[/, "", link)
    sub(/\]\(.*$/, "", link)
    text = substr(text, 1, RSTART - 1) link substr(text, RSTART + RLENGTH)
  }
  gsub(/\*\*/, "`", text)
  count = split(text, parts, "`")
  for (i = 1; i <= count; i++)
    result = result (i % 2 ? plain(parts[i]) : "\\fB" plain(parts[i]) "\\fR")
  return result
}

# A line that begins with a point or an apostrophe would be a request.
function put(text) { print (text ~ /^[.\x27]/ ? "\\&" : "") text }

# The cells of a table row, into the array cells; "\|" is a bar in a cell.
function split_row(row,   count, i) {
  gsub(/\\\|/, "\001", row)
  sub(/^\| */, "", row)
  sub(/ *\|$/, "", row)
  count = split(row, cells, / *\| */)
  for (i = 1; i <= count; i++) gsub(/\001/, "|", cells[i])
  return count
}

function heading(text) { print ".SH \"" toupper(plain(text)) "\"" }

function introduce(text) {
  print "diags \\- " tolower(substr(text, 1, 1)) styled(substr(text, 2))
  print ".SH SYNOPSIS\n.B diags\n\\fICOMMAND\\fR [\\fIARGUMENT\\fR...] [\\fIOPTION\\fR...]"
}

BEGIN {
  printf ".TH DIAGS 1 \"%s\" \"diagsrunner %s\" \"User Commands\"\n", date, version
  print ".SH NAME"
}

/^```/ { print (code ? ".EE\n.RE" : ".PP\n.RS 4\n.EX"); code = !code; next }
code { put(plain($0)); next }

/^# / { next }
/^### / { sub(/^### /, ""); print ".SS \"" plain($0) "\""; next }
/^## / { sub(/^## /, ""); heading($0); started = 1; next }

# The first paragraph is the one line that apropos shows.
!named && NF { named = 1; sub(/\.$/, ""); introduce($0); next }

/^\|[-: |]*$/ { next }
/^\|/ {
  columns = split_row($0)
  if (!in_table) {
    in_table = 1
    if (!started) { started = 1; heading("commands") }
    next
  }
  print ".TP"
  put(styled(cells[1]))
  for (i = 2; i <= columns; i++) put(styled(cells[i]))
  next
}
in_table { in_table = 0; fresh = 1 }

/^ *- / { sub(/^ *- /, ""); print ".IP \\(bu 2"; put(styled($0)); fresh = 0; next }
/^[0-9]+\. / { print ".IP " $1 " 4"; sub(/^[0-9]+\. +/, ""); put(styled($0)); fresh = 0; next }
!NF { fresh = 1; next }
{
  if (!started) { started = 1; heading("description") }
  if (fresh) print ".PP"
  fresh = 0
  sub(/^ +/, "")
  put(styled($0))
}

END {
  if (code) { print "manpage.sh: a block of code does not end" > "/dev/stderr"; exit 1 }
}
' "$document"
cat "$sections"
cat <<'ROFF'
.SH FILES
.TP
.I /usr/lib/diagsrunner
the installation that the command of the Debian package uses: class definitions in \fIschema\fR,
provider libraries and their registration in \fIproviders\fR
.TP
.I /etc/diagsrunner
its data files: excluded tests, the exclusion matrix and the messages of vendors
.TP
.I $XDG_CACHE_HOME/diagsrunner\fR or \fI~/.cache/diagsrunner
what was compiled from the class definitions; it may be removed at any time
.SH "SEE ALSO"
The documents in \fI/usr/share/doc/diagsrunner\fR.
ROFF
