#pragma once
// The recovery journal: after each step the project is written to a file in the per-user folder,
// so that a crash, a kill or a power cut loses nothing. A normal quit removes it; the next start
// after any other end offers the project back.
//
// Each running editor keeps its own journal, "recovery/journal-<pid>.tmj", and holds a lock on
// "recovery/journal-<pid>.lock" while it lives; the system lets go of the lock however the
// program ends, so a journal whose lock is free was left by a session that is over.
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "core/binaryOps.h"
#include "core/oif.h"
#include "shell/HistoryOps.h"

struct JournalEntry {
    StadiumProject Project;
    std::int64_t ChangedAt = 0;  // seconds since 1970, when the last step was recorded
};

// The journal's bytes: a tag, the project's name and base, the time, the named UV points of the
// textures, the document as an .oif file, and a checksum of all of it.
ByteBuffer EncodeJournal(const ProjectState& state, std::int64_t changedAt);
struct JournalParse {
    std::optional<JournalEntry> entry;
    std::string error;  // why the bytes are no journal
};
// Every length is checked against what remains before it is read.
JournalParse ParseJournal(const ByteBuffer& bytes);

// The folder of the journals in AppFolder.
std::string RecoveryFolder();

// The journals left by sessions that are over, newest first.
std::vector<std::string> OrphanedJournals();
// "Terramason ended while the stadium "Name" was open; its last change was at 14:02 on 23 November
// 2026." and the question.
std::string RecoveryQuestion(const JournalEntry& entry);
// A journal that cannot be read is kept beside, under a name that no start looks at again, and
// the message that tells so.
std::string SetAsideJournal(const std::string& path, const std::string& why);

// Writes the journal of this session from a thread of its own, at most about once a second, so
// that a step never waits for the disk.
class JournalWriter {
public:
    explicit JournalWriter(std::string folder, std::chrono::milliseconds spacing = std::chrono::milliseconds(1000));
    ~JournalWriter();
    JournalWriter(const JournalWriter&) = delete;
    JournalWriter& operator=(const JournalWriter&) = delete;

    // The state to write next; one offered before the last was written replaces it.
    void Offer(std::shared_ptr<const ProjectState> state, std::int64_t changedAt);
    // Waits until what was offered is on disk.
    void Flush();
    // A normal end: nothing more is written and the journal is removed.
    void Close();
    std::string Path() const { return path_; }
    // What the last write failed with; "" when it did not.
    std::string LastError() const;

private:
    void Run();
    std::string folder_, path_, lockPath_;
    int lockFd_ = -1;
    std::chrono::milliseconds spacing_;
    mutable std::mutex mutex_;
    std::condition_variable wake_, written_;
    std::shared_ptr<const ProjectState> pending_;
    std::int64_t pendingAt_ = 0;
    bool busy_ = false, closing_ = false;
    std::string error_;
    std::thread thread_;
};
