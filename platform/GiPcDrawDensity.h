#pragma once

/// How much of the point budget the host wants to use: a fifth, or all of it.
enum GiPcDrawDensity : int { GiPc_DrawDensity_Low = 0, GiPc_DrawDensity_Full = 1 };
