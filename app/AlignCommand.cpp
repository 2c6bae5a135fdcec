#include "AlignCommand.h"

#include "AlignPolyLine.h"

void RunAlignEntities() {
    AlignPolyLine command;
    command.Run();  // intended: whether the command got through to its end interests nobody
}
