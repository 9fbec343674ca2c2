#include "shell/JournalOps.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <stdexcept>

#include "core/OIFOps.h"
#include "core/ProgramState.h"

namespace fs = std::filesystem;

namespace {

constexpr char Tag[4] = {'T', 'M', 'J', '1'};

std::uint32_t Checksum(const std::uint8_t* data, std::size_t n) {
    std::uint32_t h = 2166136261u;
    for (std::size_t i = 0; i < n; ++i) h = (h ^ data[i]) * 16777619u;
    return h;
}

struct Writer {
    ByteBuffer b;
    void u32(std::uint32_t v) {
        b.resize(b.size() + 4);
        binaryOps::PutU32(b, b.size() - 4, v);
    }
    void f32(float v) {
        b.resize(b.size() + 4);
        binaryOps::PutF32(b, b.size() - 4, v);
    }
    void text(const std::string& s) {
        u32(static_cast<std::uint32_t>(s.size()));
        b.insert(b.end(), s.begin(), s.end());
    }
};

// Refuses, by throwing, any read past the end.
struct Reader {
    const ByteBuffer& b;
    std::size_t pos = 0, end = 0;
    void need(std::size_t n) const {
        if (end - pos < n) throw std::runtime_error("it ends early");
    }
    std::uint32_t u32() {
        need(4);
        pos += 4;
        return binaryOps::GetU32(b, pos - 4);
    }
    float f32() {
        need(4);
        pos += 4;
        return binaryOps::GetF32(b, pos - 4);
    }
    std::string text() {
        const std::uint32_t n = u32();
        need(n);
        pos += n;
        return std::string(reinterpret_cast<const char*>(b.data()) + pos - n, n);
    }
    // A count of records of at least `least` bytes each, checked against what remains.
    std::uint32_t count(std::size_t least) {
        const std::uint32_t n = u32();
        if (n > (end - pos) / least) throw std::runtime_error("a count runs past its end");
        return n;
    }
};

OIFFile DocumentOf(const ProjectState& state) {
    StadiumProject project = RestoreProject(state);
    return std::move(project.OIF);
}

std::string ErrnoText(int err) { return std::strerror(err); }

// The journal goes to a file of its own, private to the user, that replaces the last one only
// once it is whole on the disk.
void WriteJournalFile(const ByteBuffer& bytes, const std::string& path) {
    const std::string temporary = path + ".new";
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) throw std::runtime_error("cannot write " + temporary + ": " + ErrnoText(errno));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            const int err = errno;
            ::close(fd);
            throw std::runtime_error("cannot write " + temporary + ": " + ErrnoText(err));
        }
        done += static_cast<std::size_t>(n);
    }
    const bool synced = ::fsync(fd) == 0;
    const int err = errno;
    ::close(fd);
    if (!synced || ::rename(temporary.c_str(), path.c_str()) != 0)
        throw std::runtime_error("cannot write " + path + ": " + ErrnoText(synced ? errno : err));
}

std::string LocalTimeText(std::int64_t seconds, const char* format) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm local{};
    localtime_r(&t, &local);
    char text[64];
    return std::strftime(text, sizeof text, format, &local) ? text : "";
}

}  // namespace

ByteBuffer EncodeJournal(const ProjectState& state, std::int64_t changedAt) {
    Writer w;
    w.b.assign(Tag, Tag + 4);
    w.u32(static_cast<std::uint32_t>(static_cast<std::uint64_t>(changedAt)));
    w.u32(static_cast<std::uint32_t>(static_cast<std::uint64_t>(changedAt) >> 32));
    w.u32(static_cast<std::uint32_t>(static_cast<std::int32_t>(state.BasedOn)));
    w.text(state.Name);
    w.u32(static_cast<std::uint32_t>(state.Textures.size()));
    for (const TextureSlot& slot : state.Textures) {
        w.text(slot.Name);
        w.u32(static_cast<std::uint32_t>(slot.Parts.size()));
        for (const TexturePart& p : slot.Parts) {
            w.text(p.Name);
            w.f32(p.U);
            w.f32(p.V);
        }
    }
    OIFFile doc = DocumentOf(state);
    const ByteBuffer oif = EncodeOIF(doc);
    w.u32(static_cast<std::uint32_t>(oif.size()));
    w.b.insert(w.b.end(), oif.begin(), oif.end());
    w.u32(Checksum(w.b.data(), w.b.size()));
    return std::move(w.b);
}

JournalParse ParseJournal(const ByteBuffer& bytes) {
    JournalParse result;
    try {
        if (bytes.size() < 8 || !std::equal(Tag, Tag + 4, bytes.begin())) throw std::runtime_error("it is no journal");
        const std::size_t body = bytes.size() - 4;
        if (binaryOps::GetU32(bytes, body) != Checksum(bytes.data(), body))
            throw std::runtime_error("it was not written to its end");
        Reader r{bytes, 4, body};
        JournalEntry entry;
        const std::uint64_t low = r.u32();
        entry.ChangedAt = static_cast<std::int64_t>(low | (std::uint64_t{r.u32()} << 32));
        entry.Project.BasedOn = static_cast<std::int16_t>(static_cast<std::int32_t>(r.u32()));
        entry.Project.Name = r.text();
        const std::uint32_t slots = r.count(8);
        for (std::uint32_t s = 0; s < slots; ++s) {
            TextureSlot slot;
            slot.Name = r.text();
            const std::uint32_t parts = r.count(12);
            for (std::uint32_t p = 0; p < parts; ++p) {
                TexturePart part;
                part.Name = r.text();
                part.U = r.f32();
                part.V = r.f32();
                slot.Parts.push_back(std::move(part));
            }
            slot.PartCount = static_cast<std::int16_t>(slot.Parts.size());
            entry.Project.Textures.push_back(std::move(slot));
        }
        const std::uint32_t oifSize = r.count(1);
        const ByteBuffer oif(bytes.begin() + static_cast<std::ptrdiff_t>(r.pos),
                             bytes.begin() + static_cast<std::ptrdiff_t>(r.pos + oifSize));
        OIFParse parsed = ParseOIF(oif);
        if (!parsed.error.empty()) throw std::runtime_error("its stadium is damaged");
        entry.Project.OIF = std::move(parsed.doc);
        result.entry = std::move(entry);
    } catch (const std::exception& e) { result.error = e.what(); }
    return result;
}

std::string RecoveryFolder() { return AppPath("recovery"); }

std::vector<std::string> OrphanedJournals() {
    std::vector<std::pair<fs::file_time_type, std::string>> found;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(RecoveryFolder(), ec)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("journal-", 0) != 0 || entry.path().extension() != ".tmj") continue;
        const std::string lock = (entry.path().parent_path() / entry.path().stem()).string() + ".lock";
        const int fd = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (fd < 0) continue;
        const bool free = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
        ::close(fd);
        if (free) found.emplace_back(fs::last_write_time(entry.path(), ec), entry.path().string());
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::string> paths;
    for (auto& f : found) paths.push_back(std::move(f.second));
    return paths;
}

std::string RecoveryQuestion(const JournalEntry& entry) {
    return "Terramason ended without being quit while the stadium \"" + entry.Project.Name +
           "\" was open. Its last change was made at " + LocalTimeText(entry.ChangedAt, "%H:%M on %d %B %Y") +
           ".\r\n\r\nDo you want to recover it?";
}

std::string SetAsideJournal(const std::string& path, const std::string& why) {
    const std::string kept = path + ".unreadable-" + LocalTimeText(std::time(nullptr), "%Y%m%d-%H%M%S");
    std::error_code ec;
    fs::rename(path, kept, ec);
    fs::remove(fs::path(path).replace_extension(".lock"), ec);
    return "A stadium left by an earlier session could not be recovered: " + why + ".\r\n\r\nIts journal " +
           (ec ? "stays at " + path : "was kept as " + kept) + ".";
}

JournalWriter::JournalWriter(std::string folder, std::chrono::milliseconds spacing)
    : folder_(std::move(folder)), spacing_(spacing) {
    std::error_code ec;
    fs::create_directories(folder_, ec);
    const std::string stem = folder_ + "/journal-" + std::to_string(::getpid());
    path_ = stem + ".tmj";
    lockPath_ = stem + ".lock";
    lockFd_ = ::open(lockPath_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lockFd_ >= 0) ::flock(lockFd_, LOCK_EX | LOCK_NB);
    thread_ = std::thread([this] { Run(); });
}

JournalWriter::~JournalWriter() {
    // An end without Close keeps the journal, with the last state written.
    {
        std::lock_guard<std::mutex> lock(mutex_);
        closing_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
    if (lockFd_ >= 0) ::close(lockFd_);
}

void JournalWriter::Offer(std::shared_ptr<const ProjectState> state, std::int64_t changedAt) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        pending_ = std::move(state);
        pendingAt_ = changedAt;
    }
    wake_.notify_all();
}

void JournalWriter::Flush() {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.notify_all();
    written_.wait(lock, [this] { return !pending_ && !busy_; });
}

void JournalWriter::Close() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        pending_.reset();
        closing_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
    std::error_code ec;
    fs::remove(path_, ec);
    fs::remove(lockPath_, ec);
}

std::string JournalWriter::LastError() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return error_;
}

void JournalWriter::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    auto lastWrite = std::chrono::steady_clock::now() - spacing_;
    for (;;) {
        wake_.wait(lock, [this] { return pending_ || closing_; });
        if (!pending_) break;
        // A burst of steps is written once, when the spacing since the last write is over.
        wake_.wait_until(lock, lastWrite + spacing_, [this] { return closing_; });
        if (!pending_) continue;
        std::shared_ptr<const ProjectState> state = std::move(pending_);
        const std::int64_t at = pendingAt_;
        busy_ = true;
        lock.unlock();
        std::string failure;
        try {
            WriteJournalFile(EncodeJournal(*state, at), path_);
        } catch (const std::exception& e) { failure = e.what(); }
        lock.lock();
        busy_ = false;
        error_ = failure;
        lastWrite = std::chrono::steady_clock::now();
        written_.notify_all();
    }
    written_.notify_all();
}
