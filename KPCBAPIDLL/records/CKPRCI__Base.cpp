#include "CKPRCI__Base.h"

void CKPRCI__BaseRV::Serialize(CArchive& ar) { records::Field(ar, m_ErrorCode); }
