#pragma once

#include "simulator/commands.h"

// The functions of the command table, by what they reach.

// inputcommands.cpp: fingers
Action parsePress(CommandContext &context, Arguments &arguments);
Action parseRelease(CommandContext &context, Arguments &arguments);
Action parseTap(CommandContext &context, Arguments &arguments);
Action parseTurn(CommandContext &context, Arguments &arguments);
Action parsePush(CommandContext &context, Arguments &arguments);
Action parseEscape(CommandContext &context, Arguments &arguments);

// devicecommands.cpp: the core service
Action parseSet(CommandContext &context, Arguments &arguments);
Action parseGet(CommandContext &context, Arguments &arguments);
Action parseCall(CommandContext &context, Arguments &arguments);
Action parseLinkDrop(CommandContext &context, Arguments &arguments);
Action parseLinkRestore(CommandContext &context, Arguments &arguments);
Action parseUpgrade(CommandContext &context, Arguments &arguments);
Action parsePresetAdd(CommandContext &context, Arguments &arguments);
Action parsePresetRemove(CommandContext &context, Arguments &arguments);

// lcdcommands.cpp: what the front shows
Action parseLeds(CommandContext &context, Arguments &arguments);
Action parseLcd(CommandContext &context, Arguments &arguments);
Action parseWaitLcdStill(CommandContext &context, Arguments &arguments);
Action parseExpectLcd(CommandContext &context, Arguments &arguments);

// expectcommands.cpp
Action parseExpectLed(CommandContext &context, Arguments &arguments);
Action parseExpectRequest(CommandContext &context, Arguments &arguments);
Action parseExpectProperty(CommandContext &context, Arguments &arguments);
Action parseExpectMessage(CommandContext &context, Arguments &arguments);
Action parseExpectExit(CommandContext &context, Arguments &arguments);

// runcommands.cpp: the run as a whole
Action parseWait(CommandContext &context, Arguments &arguments);
Action parseWaitReady(CommandContext &context, Arguments &arguments);
Action parseRestart(CommandContext &context, Arguments &arguments);
Action parseHelp(CommandContext &context, Arguments &arguments);
Action parseQuit(CommandContext &context, Arguments &arguments);
