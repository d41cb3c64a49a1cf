#include "platform/ClickSound.h"

#include "platform/EventSoundSetting.h"
#include "platform/SoundLibrary.h"

#include <QFile>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

namespace {

using namespace std::chrono_literals;

/// Plays on a thread of its own: opening the sound system takes milliseconds
/// without a sound server, and as long as it likes with one that hangs.
class Clicker
{
public:
    Clicker() { std::thread(&Clicker::run, this).detach(); }

    void click(const std::string &file)
    {
        {
            const std::lock_guard guard(m_mutex);
            m_file = file;
            m_wanted = true;
        }
        m_changed.notify_all();
    }

    /// Lets the last click sound out, unless the sound system hangs.
    void waitUntilQuiet()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, 300ms, [this] { return !m_wanted && !m_starting && m_playing == 0; });
    }

private:
    [[noreturn]] void run()
    {
        m_library = SoundLibrary::load();
        m_context = newContext();
        for (;;) {
            const std::string file = nextFile();
            started(m_setting.isOn() && play(file));
        }
    }

    bool play(const std::string &file)
    {
        const bool plays = m_context != nullptr && play(m_context, file);
        if (!plays && m_context != nullptr) {
            // A sound server may have gone and come back. One that was never there is not asked at each click.
            m_library->contextDestroy(m_context);
            m_context = m_worked ? newContext() : nullptr;
        }
        m_worked = plays;
        return plays;
    }

    [[nodiscard]] ca_context *newContext() const
    {
        ca_context *context = nullptr;
        if (m_library == nullptr || m_library->contextCreate(&context) != CA_SUCCESS) {
            return nullptr;
        }
        m_library->contextChangeProps(context, CA_PROP_APPLICATION_NAME, "Cramlet", nullptr);
        // Without a sound card, ALSA would fill stderr with its complaints.
        const bool chosen = std::getenv("CANBERRA_DRIVER") != nullptr;
        if (!chosen && !std::filesystem::exists("/dev/snd")) {
            m_library->contextSetDriver(context, "pulse");
        }
        return context;
    }

    bool play(ca_context *context, const std::string &file)
    {
        ca_proplist *properties = nullptr;
        if (m_library->proplistCreate(&properties) != CA_SUCCESS) {
            return false;
        }
        // By its file alone: under an event's id, a desktop's sound theme or the server's memory may have another
        // sound.
        m_library->proplistSets(properties, CA_PROP_MEDIA_FILENAME, file.c_str());
        m_library->proplistSets(properties, CA_PROP_MEDIA_ROLE, "event");
        m_library->proplistSets(properties, CA_PROP_EVENT_DESCRIPTION, "Click");
        const int result = m_library->contextPlayFull(context, 0, properties, &Clicker::finished, this);
        m_library->proplistDestroy(properties);
        return result == CA_SUCCESS;
    }

    std::string nextFile()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_wanted; });
        m_wanted = false;
        m_starting = true;
        return m_file;
    }

    void started(bool plays)
    {
        {
            const std::lock_guard guard(m_mutex);
            m_starting = false;
            m_playing += plays ? 1 : 0;
        }
        m_changed.notify_all();
    }

    static void finished(ca_context *, std::uint32_t, int, void *clicker)
    {
        auto *self = static_cast<Clicker *>(clicker);
        {
            const std::lock_guard guard(self->m_mutex);
            --self->m_playing; // may come before started()
        }
        self->m_changed.notify_all();
    }

    // Of the sound's own thread alone.
    EventSoundSetting m_setting;
    const SoundLibrary *m_library = nullptr;
    ca_context *m_context = nullptr;
    bool m_worked = false;

    // Of both threads.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_file;
    bool m_wanted = false;
    bool m_starting = false;
    int m_playing = 0;
};

std::string &clickFile()
{
    static std::string file;
    return file;
}

} // namespace

void setClickFile(const QString &path)
{
    clickFile() = QFile::encodeName(path).toStdString();
}

void playClick()
{
    if (clickFile().empty()) {
        return;
    }
    struct Sound
    {
        // Never deleted: its thread may still be waiting for a sound server when the program ends.
        Clicker *clicker = new Clicker;
        ~Sound() { clicker->waitUntilQuiet(); }
    };
    static const Sound sound;
    sound.clicker->click(clickFile());
}
