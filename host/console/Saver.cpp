#include "host/console/Saver.h"

#include <algorithm>
#include <memory>
#include <string>
#include <system_error>

#include "host/console/Files.h"
#include "host/console/Interruption.h"
#include "host/console/Meter.h"
#include "host/console/Proof.h"
#include "host/console/Table.h"
#include "host/dxf/Document.h"
#include "host/dxf/Errors.h"

namespace host::console {

namespace {

bool same(const dxf::GroupEdit& a, const dxf::GroupEdit& b) {
    return a.kind == b.kind && a.index == b.index && a.code == b.code && a.value == b.value;
}

bool same(const dxf::Changes& a, const dxf::Changes& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return x.first == y.first &&
               std::equal(x.second.begin(), x.second.end(), y.second.begin(), y.second.end(),
                          [](const auto& p, const auto& q) { return same(p, q); });
    });
}

std::string counted(std::size_t entities) {
    return entities == 0   ? "no entity changed"
           : entities == 1 ? "1 entity changed"
                           : std::to_string(entities) + " entities changed";
}

}  // namespace

void Saver::save(AcDbDatabase& drawing, const std::filesystem::path& target) {
    demandTarget(target);
    dxf::Changes changes = database::pendingChanges(drawing);
    if (!options_.dryRun) write(drawing, target);
    printer_.print(tame(shownName(target)) +
                   (options_.dryRun ? " would be written: " : " written: ") +
                   this->changes(drawing) + ".\n");
    target_ = target;
    hasSaved_ = true;
    if (options_.verify) verify(drawing, target, changes);
    saved_ = std::move(changes);
}

std::string Saver::changes(const AcDbDatabase& drawing) const {
    const Record record = account_.record(drawing);
    const Outcome outcome = record.outcome();
    return outcome.turned.empty() && outcome.left.empty()
               ? counted(database::pendingChanges(drawing).size())
               : outcome.text();
}

bool Saver::isModified(const AcDbDatabase& drawing) const {
    return !same(database::pendingChanges(drawing), saved_);
}

void Saver::demandTarget(const std::filesystem::path& target) const {
    const auto refuse = [&](const std::string& why) {
        throw NotSaved(utf8(target) + " was not written: " + why);
    };
    if (options_.readOnly) refuse("--readonly forbids saving");
    if (const std::string why = otherFormat(target); !why.empty()) refuse(why);
    if (const char* option = claimant(options_, target); option != nullptr)
        refuse(std::string(option) + " names it");
    try {
        console::demandTarget(target, options_.folders);
    } catch (const dxf::WriteError& error) {
        throw NotSaved(error.what());
    }
}

void Saver::write(AcDbDatabase& drawing, const std::filesystem::path& target) {
    const Interruption interruption;
    try {
        provideFolder(target, options_.folders);
        database::saveDrawing(
            drawing, target,
            interruption.watching(progressMeter("Writing " + utf8(target.filename()))));
    } catch (const dxf::WriteError& error) {
        throw NotSaved(error.what());
    } catch (const Interruption::Happened&) {
        throw NotSaved(utf8(target) + " was not written: it was interrupted");
    }
}

void Saver::verify(const AcDbDatabase& drawing, const std::filesystem::path& target,
                   const dxf::Changes& changes) {
    const dxf::Document& before = database::document(drawing);
    std::shared_ptr<const dxf::Document> after;
    try {
        after =
            options_.dryRun
                ? dxf::Document::fromBytes(dxf::apply(before, changes), utf8(target))
                : dxf::Document::open(target, progressMeter("Reading " + utf8(target.filename())));
    } catch (const dxf::ReadError& error) {
        proved_ = false;
        printer_.error(std::string("--verify can't read what was written: ") + error.what());
        return;
    }
    const Proof proof = prove(before, *after, changes);
    if (proof.strangers == 0) return printer_.print(proof.text);
    options_.quiet ? printer_.result(proof.strange) : printer_.print(proof.text);
    proved_ = false;
    printer_.error("--verify found " + std::to_string(proof.strangers) +
                   (proof.strangers == 1 ? " difference" : " differences") +
                   " that no command made by turning; the list above marks them with '!'");
}

}  // namespace host::console
