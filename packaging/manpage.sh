#!/usr/bin/env bash
# manpage.sh PAGE DOCUMENT VERSION DATE [SECTIONS]: the manual page diags.1 or diags-slurm.8, made from
# docs/diags.md or docs/slurm.md, and diags.1 from the command's own grammar, too, as "diags manual" writes it
# to the file SECTIONS, so that there is one text of each to keep right. It knows the Markdown that the
# documents are written in: headings, paragraphs, lists, tables (the first column becomes what is
# explained; of more than two, the others are named by their headings), blocks of code, code, bold type and
# links.
set -euo pipefail
page=$1 document=$2 version=$3 date=$4 sections=${5:-/dev/null}
name=${page%.*} section=${page##*.}
case $page in
  diags.1)
    manual="User Commands"
    synopsis='.B diags\n\\fICOMMAND\\fR [\\fIARGUMENT\\fR...] [\\fIOPTION\\fR...]'
    ;;
  diags-slurm.8)
    manual="System Administration"
    synopsis='.B /usr/lib/diagsrunner/slurm/diags\\-slurm\n\\fBhealth\\fR|\\fBprolog\\fR|\\fBepilog\\fR [\\fIOPTION\\fR...]'
    ;;
  *)
    printf 'manpage.sh: there is no page %s\n' "$page" >&2
    exit 1
    ;;
esac

awk -v name="$name" -v section="$section" -v manual="$manual" -v synopsis="$synopsis" \
  -v version="$version" -v date="$date" '
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
  print plain(name) " \\- " tolower(substr(text, 1, 1)) styled(substr(text, 2))
  print ".SH SYNOPSIS\n" synopsis
}

# What a row says of the thing in its first cell.
function explain(   i, told) {
  if (columns == 2) put(styled(cells[2]))
  for (i = 2; columns > 2 && i <= columns; i++) {
    if (cells[i] == "") continue
    if (told++) print ".br"
    put((titles[i] == "" ? "" : "\\fI" plain(titles[i]) "\\fR: ") styled(cells[i]))
  }
}

BEGIN {
  printf ".TH %s %s \"%s\" \"diagsrunner %s\" \"%s\"\n", toupper(plain(name)), section, date, version, manual
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
    for (i = 1; i <= columns; i++) { titles[i] = cells[i]; gsub(/`/, "", titles[i]) }
    next
  }
  print ".TP"
  put(styled(cells[1]))
  explain()
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
filesOfCommand() {
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
}

filesOfSlurm() {
  cat <<'ROFF'
.SH FILES
.TP
.I /usr/lib/diagsrunner/slurm/health\fR, \fIprolog\fR, \fIepilog
links to the program, for the configuration of Slurm
.TP
.I /etc/diagsrunner/slurm.toml
its configuration; there may be none
.TP
.I /var/lib/diagsrunner/slurm
what ran when, and the history of the runs
.SH "SEE ALSO"
.BR diags (1),
.BR slurm.conf (5),
.BR scontrol (1);
the documents in \fI/usr/share/doc/diagsrunner\fR.
ROFF
}

tr -d '\r' <"$sections"
if [[ $page == diags.1 ]]; then filesOfCommand; else filesOfSlurm; fi
