// Commands for the tests, as a module would register them: group TESTS.
//   PICK      asks for an entity and says its handle          SELECT   asks for entities and says
//   their handles ASK       asks for a text without blanks, ASKLONG with    POINT    asks for a
//   point, KEY for Left or Right TURN      asks for entities and gives each text and block
//   reference the rotation 1.5 THROW     turns like TURN, then throws std::runtime_error("broken");
//   THROWINT throws 42 LEAVE     opens an entity, makes a set and a result buffer, and leaves all
//   of it NOTHING   does nothing
#pragma once

namespace host::test {

void registerTestCommands();
void removeTestCommands();

}  // namespace host::test
