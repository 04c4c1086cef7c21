/* The rules of the queue: two clients hand over a receipt each, two workers register them with a service, and a person
   may cancel what was never sent and sell it elsewhere. Requests and answers get lost, a worker may die before any of
   its steps, a client dies between storing and being told, and a worker may be thought dead while it is only slow. The
   number of such faults is bounded, or nothing would ever have to end. Only the second receipt may be one that the
   service refuses, and only the first one may be cancelled. The macros BREAK_... leave out one rule each; `check` sees
   each of them fail. */

#ifndef FAULTS
#define FAULTS 2
#endif
#define RECEIPTS 2
#define WORKERS 2
#define NOBODY 0
#define GONE 3 /* whose lock the kernel has released */

mtype = { absent, queued, sent, registered, refused, cancelled };
mtype = { accepts, refuses, isSilent, blamesAccount };

/* The store. One d_step is one transaction. */
mtype state[RECEIPTS] = absent;
byte attempt[RECEIPTS], owner[RECEIPTS], endings[RECEIPTS];
bool maybeSent[RECEIPTS], hasWord[RECEIPTS];

/* The world. */
bool promised[RECEIPTS];                 /* the client was told that it is durable */
bool isKnown[RECEIPTS], isWrong[RECEIPTS]; /* what the service knows of the id, and what it thinks of the content */
byte registrations[RECEIPTS];            /* how often the sale is registered, under whatever id */
byte faults = FAULTS;
byte life[WORKERS + 1];                  /* counts a worker's deaths, so that it hears no answers of an earlier life */

chan request = [WORKERS] of { byte, byte, byte, bool }; /* worker, its life, receipt, whether under a new id */
chan answer[WORKERS + 1] = [1] of { mtype };

#define isFinished(r) (state[r] == registered || state[r] == refused || state[r] == cancelled)
#define mayFail (faults > 0)
#define fault faults--

#ifdef BREAK_TAKEOVER
#define isOrphan(r) false
#else
#define isOrphan(r) (state[r] == sent && owner[r] == GONE)
#endif
/* The lease of a live worker may end, too. */
#define isOverdue(r, me) (state[r] == sent && owner[r] != me && owner[r] != GONE && mayFail)

#ifdef BREAK_FENCE
#define isMine(r, me, mine) true
#else
#define isMine(r, me, mine) (state[r] == sent && owner[r] == me && attempt[r] == mine)
#endif

proctype Client(byte r) {
    do
    :: promised[r] -> break
#ifdef BREAK_DURABLE
    :: d_step { !promised[r] -> promised[r] = true } /* says so first, */
       if
       :: d_step { state[r] == absent -> state[r] = queued }
       :: d_step { mayFail -> fault } goto died /* and then dies */
       fi
#else
    :: d_step { !promised[r] && state[r] == absent -> state[r] = queued }
    :: d_step { !promised[r] && state[r] != absent -> promised[r] = true } /* also when it died after storing */
#endif
    od;
died: skip
}

/* Cancels the first receipt and makes the sale elsewhere; or does nothing. */
active proctype Person() {
    if
#ifdef BREAK_CANCEL
    :: d_step { !isFinished(0) && state[0] != absent ->
#else
    :: d_step { state[0] == queued && !maybeSent[0] ->
#endif
          state[0] = cancelled; endings[0]++; hasWord[0] = true; registrations[0]++ }
    :: true
    fi
}

/* One step: what it does in between, nobody sees. Requests and answers wait in their channels. */
active proctype Service() {
    byte w, when, r;
    bool isNew;
    mtype said;
end:
    do
    :: atomic { request?w,when,r,isNew ->
       if
       :: mayFail -> fault; said = isSilent      /* the request is lost */
       :: mayFail -> fault; said = blamesAccount /* login, group, or a service that is down */
       :: isWrong[r] -> said = refuses
       :: isKnown[r] && !isNew ->
#ifdef BREAK_KNOWN
             said = refuses
#else
             said = accepts
#endif
       :: !isWrong[r] && (!isKnown[r] || isNew) ->
             isKnown[r] = true; registrations[r]++; said = accepts;
             if
             :: mayFail -> fault; said = isSilent /* the answer is lost */
             :: true
             fi
       :: !isWrong[r] && !isKnown[r] && r == 1 -> isWrong[r] = true; said = refuses
       fi;
       if
       :: when == life[w] -> answer[w]!said
       :: else
       fi;
       w = 0; when = 0; r = 0; isNew = 0; said = 0 }
    od
}

/* The kernel releases the lock of the dead one; all that it knew is gone. */
#define DIES d_step { mayFail -> fault; life[me]++; \
    do :: answer[me]?[_] -> answer[me]?said :: else -> break od; \
    owner[0] = (owner[0] == me -> GONE : owner[0]); owner[1] = (owner[1] == me -> GONE : owner[1]); \
    r = 0; mine = 0; isRepeat = false; said = 0 } goto idle

#define CLAIM(n) state[n] = sent; owner[n] = me; attempt[n]++; mine = attempt[n]; maybeSent[n] = true; r = n
#define CLAIMABLE(n) (state[n] == queued || isOrphan(n))

proctype Worker(byte me) {
    byte r, mine;
    bool isRepeat;
    mtype said;
end:
idle:
    if
    :: d_step { CLAIMABLE(0) -> isRepeat = maybeSent[0]; CLAIM(0) }
    :: d_step { CLAIMABLE(1) -> isRepeat = maybeSent[1]; CLAIM(1) }
    :: d_step { isOverdue(0, me) -> fault; isRepeat = true; CLAIM(0) }
    :: d_step { isOverdue(1, me) -> fault; isRepeat = true; CLAIM(1) }
#ifdef BREAK_CLAIM
    :: state[0] == queued -> request!me,life[me],0,false;
       if
       :: answer[me]?said
       :: DIES
       fi;
       goto claimLate
#endif
    fi;
    if
#ifdef BREAK_ID
    :: d_step { request!me,life[me],r,isRepeat }
#else
    :: d_step { request!me,life[me],r,false }
#endif
    :: DIES
    fi;
    if
    :: answer[me]?said
    :: DIES
    fi;
    goto conclude;
#ifdef BREAK_CLAIM
claimLate:
    if
    :: d_step { state[0] == queued -> CLAIM(0) }
    :: d_step { state[0] != queued -> skip } goto idle
    fi;
#endif
conclude:
    if
    :: DIES
    :: d_step { isMine(r, me, mine) && said == accepts ->
          assert(!isFinished(r)); state[r] = registered; owner[r] = NOBODY; endings[r]++; hasWord[r] = true }
    :: d_step { isMine(r, me, mine) && said == refuses ->
          assert(!isFinished(r)); state[r] = refused; owner[r] = NOBODY; endings[r]++; hasWord[r] = true }
    :: d_step { isMine(r, me, mine) && (said == isSilent || said == blamesAccount) ->
#ifdef BREAK_EVIDENCE
          if :: said == isSilent -> state[r] = registered; endings[r]++ :: else -> state[r] = queued fi;
#else
#ifdef BREAK_ACCOUNT
          if :: said == blamesAccount -> state[r] = refused; endings[r]++ :: else -> state[r] = queued fi;
#else
          assert(!isFinished(r)); state[r] = queued;
#endif
#endif
          owner[r] = NOBODY }
    :: d_step { !isMine(r, me, mine) -> skip } /* woke up late: changes nothing */
    fi;
    d_step { r = 0; mine = 0; isRepeat = false; said = 0 } goto idle
}

#define isSound(r) (registrations[r] <= 1 && endings[r] <= 1 && (!isFinished(r) || hasWord[r]) && \
    (state[r] != registered || registrations[r] == 1) && (state[r] != refused || registrations[r] == 0) && \
    (!promised[r] || state[r] != absent))

init { atomic { run Client(0); run Client(1); run Worker(1); run Worker(2) } }

ltl sound { [] (isSound(0) && isSound(1)) }
ltl ending { [] ((promised[0] -> <> isFinished(0)) && (promised[1] -> <> isFinished(1))) }
