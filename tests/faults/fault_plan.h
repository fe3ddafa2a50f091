#pragma once

/* What the library and the sweep share: which call fails, and how many there were. C and C++ read it alike.
 */

enum FaultKind {
  faultMemory,
  faultMap,
  faultOpen,
  faultRead,
  faultWrite,
  faultSync,
  faultTruncate,
  faultRename,
  faultClose,
  faultPipe,
  faultSpawn,
  faultWait,
  faultPoll,
  faultKinds
};

/* Lies in a file that every process of a run maps, so that calls are counted over all of them. */
struct FaultPlan {
  int kind;  /* of the calls that fail; -1: none does */
  long at;   /* the number of the first that fails, from 1 */
  long last; /* the number of the last that fails */
  int error; /* what errno is then; 0: the call does only half of what it is asked for; below 0: the process
                gets the signal of that number, and if it lives on, the call is carried out */
  long calls[faultKinds];
};

/* The variable of the environment that names the file. */
#define FAULT_PLAN_VARIABLE "XMLA_FAULT_PLAN"
/* The only program whose calls count; what it starts may be another. */
#define FAULTY_PROGRAM "xmla-bridge"
