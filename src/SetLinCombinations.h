#ifndef SRC_SETLINCOMBINATIONS_H
#define SRC_SETLINCOMBINATIONS_H

class KorvanC;

/// Forms the combinations that the estimation uses: P1-C1 and P2-C1 when code is used, L4 when
/// phase is. Each raises its flag in the observation header, where its types are observed.
void SetLinearCombinations(KorvanC& ctx);

#endif
