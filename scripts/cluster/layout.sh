# SPDX-License-Identifier: Apache-2.0
# Sourced by the scripts of this folder: where a run keeps what.
#
# WORK/parts/0000.list   files of a task, a path a line
# WORK/rows/0000.csv     its rows, there when the task is whole
# WORK/failures/0000.txt its failed files: path, tab, reason
# WORK/options           options of "texturon batch", one a line
# WORK/program           path of the program

part_numbers() { # WORK: the numbers of all parts, in order
  for list in "$1"/parts/*.list; do basename "$list" .list; done
}

line_count() { # FILE: its lines; 0 where there is none
  if [ -f "$1" ]; then wc -l < "$1"; else echo 0; fi
}

is_whole() { # WORK PART
  [ -f "$1/failures/$2.txt" ] && [ -f "$1/rows/$2.csv" ]
}
