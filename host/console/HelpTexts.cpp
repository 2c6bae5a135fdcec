#include "host/console/HelpTexts.h"

namespace host::console {

const std::string_view helpText =
    R"(orlinth turns the texts and symbols of a drawing along a line, without a seat of the CAD program.

  orlinth [DRAWING] [options]       a session with the drawing open; a Command: prompt in a terminal
  orlinth DRAWING... -s FILE        a script over several drawings
  orlinth align DRAWING... --line LINE [--select FILTER]... [--flip] [options]
                                    one command, start to end; `orlinth align --help` tells more

Options:
  -i, --input DRAWING     the same as DRAWING (/i is accepted too)
  -s, --script FILE       take the answers from a script; the session ends with it (/s)
  -o, --output FILE       save there when the session ended well; nothing is written without -o, QSAVE
                          or SAVEAS; FOLDER/ keeps the drawing's name, and {} stands for it in a name
      --report FILE       what was turned and what was left, and why: JSON for machines in a file .json,
                          a table in a file .csv, text otherwise, - for standard output
      --summary FILE      what became of each drawing of the call, .json or .csv
      --picture FILE      picture of the change, .svg .png or .pdf: the picked line, what was turned
                          before (pale) and after, what was left marked
      --dry-run           everything but writing the drawing
      --verify            after saving, compare the two files group by group and list each difference
      --readonly          refuse to save (/readonly)
      --quiet             print errors, the table of the drawings and what was asked for with "-" only,
                          and of --verify the differences that no command made
      --log FILE          everything printed, UTF-8; with --quiet also what is not printed
      --module FILE       module to load (default: ZEPTOrlinth.arx beside the program)
  -h, --help              this text
      --version           the version

Commands in a session: ZEPTAlignEntities, OPEN, SAVE, SAVEAS, QSAVE, QUIT, U, UNDO, REDO, SCRIPT, LIST, LAYER,
ZOOM, SETVAR, REGEN, HELP. In a terminal Tab completes, Escape or Ctrl-C cancels the running command.
An entity is picked by a point (25496080,6672015) or by its handle: (handent "2F").

Examples:
  orlinth align streets.dxf --line handle=2F -o turned.dxf
      turns every text and symbol along the entity whose handle is 2F
  orlinth -i streets.dxf -s run.scr -o turned.dxf --verify
      takes the answers from a script, then proves that nothing else in the file has changed;
      run.scr, one answer a line, the empty line ends the selection, k turns the symbols round:
          ZEPTAlignEntities
          (handent "2F")
          ALL

          k
  orlinth streets.dxf
      a session; QSAVE saves, QUIT leaves

Exit codes:
  0  done
  1  a command was cancelled, or there was nothing to do: no line at the pick, nothing selected
  2  usage: unknown option, missing value
  3  the drawing, script or module can't be read
  4  the result can't be written; the target and the source are as they were
  5  the script ended inside a prompt, or named a command that does not exist
  6  --verify found a difference that the command did not make
)";

const std::string_view alignHelpText =
    R"(orlinth align turns the texts and symbols of a drawing along one of its lines.

  orlinth align DRAWING... --line LINE [--select FILTER]... [--flip] [options]

  --line handle=2F        the entity with this handle gives the direction
  --line x,y              the entity at this point does; a miss names the nearest lines
  --line layer=NAME       the only line, polyline, arc, circle, ellipse or spline on this layer does
  --select FILTER         which entities are turned; several --select narrow the selection:
      all                       all that is not on a frozen or locked layer (the default)
      layer=PATTERN             on a layer that matches: * any text, ? one character, A,B either
      type=TEXT,INSERT          of one of these classes, as the drawing names them
      handle=A,B                with one of these handles
      window=x1,y1,x2,y2        wholly inside the rectangle
      crossing=x1,y1,x2,y2      inside the rectangle or crossing it
  --flip                  turn the symbols half a revolution; texts always stay readable

Options: -i, -o, --report, --summary, --picture, --dry-run, --verify, --readonly, --quiet, --log, --module
as `orlinth --help` tells.

Examples:
  orlinth align streets.dxf --line handle=2F -o turned.dxf
  orlinth align streets.dxf --line handle=2F --select all --flip -o turned.dxf
  orlinth align streets.dxf --line 25496080,6672015 --select "layer=OSOITE*" --select type=TEXT -o turned.dxf
  orlinth align streets.dxf --line handle=2F --flip --dry-run --report -
      tells what would be turned, and by how much
  orlinth align north.dxf south.dxf --line handle=2F -o turned/ --report "turned/{}.json"
      several drawings, each by itself, and a table of all; {} stands for the name of each
  orlinth align streets.dxf --line handle=2F --flip --dry-run --picture change.svg
)";

std::string_view callForms() {
    return helpText.substr(0, helpText.find("\nOptions:"));
}

}  // namespace host::console
