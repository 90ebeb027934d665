/*
 * The read-write lock of gui-core/src/platform/ReadWriteLock.cpp, step by step.
 *
 * A critical section is one atomic step here: what happens in it, nobody sees in parts. A wait for an event is a
 * step of its own, before it, as in the code; so everything can happen between the two.
 *
 * Checked over every order of steps:
 *   - a writer is alone, readers are never with a writer        (assertions)
 *   - no reader enters while a writer waits                      (assertion)
 *   - nobody is left asleep: every thread gets in and out        (no invalid end state; all_done under weak fairness)
 *
 * Each MUTANT takes one condition away. The check must find every one of them; one that it does not find would
 * mean that the model proves nothing.
 */

#ifndef READERS
#define READERS 2
#endif
#ifndef WRITERS
#define WRITERS 2
#endif
#ifndef ROUNDS
#define ROUNDS 2
#endif

/* The lock. */
byte readers = 0;
byte waitingWriters = 0;
bool writerInside = false;
bool noReaders = true; /* events */
bool noWriter = true;

/* What the check looks at. */
byte readingNow = 0;
byte writingNow = 0;
byte done = 0;

#ifdef MUTANT_READER_IGNORES_WRITER
#define READER_MAY_ENTER (waitingWriters == 0)
#else
#ifdef MUTANT_NO_PREFERENCE
#define READER_MAY_ENTER (!writerInside)
#else
#define READER_MAY_ENTER (!writerInside && waitingWriters == 0)
#endif
#endif

/* That no reader is inside need not be looked at again, as it turns out: none enters between the event and this step,
   because the writer is counted as waiting all the while. The code looks all the same; only the other half has a mutant. */
#ifdef MUTANT_WRITER_IGNORES_WRITER
#define WRITER_MAY_ENTER (readers == 0)
#else
#define WRITER_MAY_ENTER (readers == 0 && !writerInside)
#endif

inline unlock()
{
    atomic {
        if
        :: writerInside ->
            writerInside = false;
#ifndef MUTANT_WRITER_LEAVES_SILENTLY
            noWriter = true
#endif
        :: else ->
            readers--;
            if
            :: readers == 0 ->
#ifndef MUTANT_LAST_READER_LEAVES_SILENTLY
                noReaders = true
#else
                skip
#endif
            :: else -> skip
            fi
        fi
    }
}

proctype Reader()
{
    byte round = 0;
    bool inside;
    do
    :: round < ROUNDS ->
        inside = false;
        do
        :: !inside ->
            noWriter; /* wait */
            atomic {
                if
                :: READER_MAY_ENTER ->
                    assert(waitingWriters == 0);
                    readers++;
                    noReaders = false;
                    inside = true
                :: else -> skip
                fi
            }
        :: inside -> break
        od;
        atomic { readingNow++; assert(writingNow == 0) };
        atomic { assert(writingNow == 0); readingNow-- };
        unlock();
        round++
    :: else -> break
    od;
    done++
}

proctype Writer()
{
    byte round = 0;
    bool inside;
    do
    :: round < ROUNDS ->
        inside = false;
        waitingWriters++;
        do
        :: !inside ->
            noReaders; /* wait */
            noWriter;  /* wait */
            atomic {
                if
                :: WRITER_MAY_ENTER ->
                    waitingWriters--;
                    writerInside = true;
                    noWriter = false;
                    inside = true
                :: else -> skip
                fi
            }
        :: inside -> break
        od;
        atomic { writingNow++; assert(writingNow == 1 && readingNow == 0) };
        atomic { assert(writingNow == 1 && readingNow == 0); writingNow-- };
        unlock();
        round++
    :: else -> break
    od;
    done++
}

init
{
    byte i;
    atomic {
        for (i : 1 .. READERS) { run Reader() };
        for (i : 1 .. WRITERS) { run Writer() }
    }
}

ltl all_done { <> (done == READERS + WRITERS) }
