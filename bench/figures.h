// The figures, each group measured by itself.
#ifndef TEMBRA_BENCH_FIGURES_H
#define TEMBRA_BENCH_FIGURES_H

#include "report.h"
#include "timing.h"

namespace bench {

void measureSystemCalls(Report& report);  // first: it needs a process of one thread
void measureReceiving(const Effort& effort, Report& report);
void measureClassification(const Effort& effort, Report& report);
void measureLookUps(const Effort& effort, Report& report);
void measureNames(const Effort& effort, Report& report);
void measureWholeAdd(const Effort& effort, Report& report);
void measureKit(const Effort& effort, Report& report);
void measureAllocations(Report& report);
void measureSizes(Report& report);
void measureFrontEnds(const Effort& effort, Report& report);
void measureConnection(const Effort& effort, Report& report);

}  // namespace bench

#endif
