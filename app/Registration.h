// What a module registers with the host: commands, custom classes and functions for LISP. Each kind
// is one table of pointers, of a fixed number of slots, in which null slots stand for padding;
// every walk goes from the first slot to the last and passes nulls over.
//
// Who builds on the frame defines the three functions at the end; this module's tables
// stand in Registration.cpp.
#pragma once

#include <accmd.h>
#include <rxclass.h>

#include <array>
#include <cstddef>
#include <cstdint>

// "No text in the resources", for the resource ids below.
constexpr unsigned kNoResource = 0xFFFFFFFFu;

// A command. Its names are kept by the table for the life of the module.
struct ArxCommand {
    const ACHAR* groupName;
    const ACHAR* globalName;
    const ACHAR* localName;  // null: the text of `localNameResource`
    std::int32_t flags;      // ACRX_CMD_MODAL and its like
    AcRxFunctionPtr function;
    AcEdUIContext* context;
    unsigned localNameResource;
};

// A class that the module adds to those of the host.
struct ArxCustomClass {
    AcRxClass* (*descriptor)();
    void (*initialise)();
    bool registered;  // kept by the frame
};

// A function that LISP can call.
struct ArxAdsSymbol {
    const ACHAR* name;  // null: the text of `nameResource`
    int (*function)();
    int registerFunction;  // 1: the host calls the function directly, by acedRegFunc
    unsigned nameResource;
};

template <class Entry, std::size_t slots>
using RegistrationTable = std::array<Entry*, slots>;
using ArxCustomClassTable = RegistrationTable<ArxCustomClass, 33>;
using ArxCommandTable = RegistrationTable<const ArxCommand, 67>;
using ArxAdsSymbolTable = RegistrationTable<const ArxAdsSymbol, 33>;

// The table DBXCUSTO.
const ArxCustomClassTable& ArxCustomClasses();
// The table ARXCOMMA.
const ArxCommandTable& ArxCommands();
// The table ADSSYMBO.
const ArxAdsSymbolTable& ArxAdsSymbols();
