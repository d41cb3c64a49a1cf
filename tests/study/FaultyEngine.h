#pragma once

#include <sqlite3.h>
#include <utility>

/// Makes one statement fail, in whichever connection it is run that was opened while this exists.
class FaultyEngine
{
public:
    FaultyEngine() { sqlite3_auto_extension(reinterpret_cast<void (*)()>(&watch)); }
    FaultyEngine(const FaultyEngine &) = delete;
    FaultyEngine &operator=(const FaultyEngine &) = delete;
    ~FaultyEngine()
    {
        sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&watch));
        statementsLeft = 0;
    }

    /// 1 is the next statement.
    void failAt(int statement) { statementsLeft = statement; }
    /// Whether the fault has come to pass. None is due afterwards.
    bool hasFailed() { return std::exchange(statementsLeft, 0) <= 0; }

private:
    static int watch(sqlite3 *engine, char ** /*error*/, const struct sqlite3_api_routines * /*api*/)
    {
        return sqlite3_trace_v2(engine, SQLITE_TRACE_STMT, &beforeStatement, engine);
    }
    static int beforeStatement(unsigned /*event*/, void *engine, void * /*statement*/, void * /*sql*/)
    {
        if (statementsLeft > 0 && --statementsLeft == 0) {
            sqlite3_interrupt(static_cast<sqlite3 *>(engine));
            statementsLeft = -1;
        }
        return 0;
    }

    static inline int statementsLeft = 0; ///< 0: no fault is due; -1: it has come
};
