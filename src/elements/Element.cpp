#include "molcryst/elements/Element.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace molcryst {

namespace {

struct ElementRow {
    const char* symbol;
    signed char atomic_number;
    double vdw_radius;       // Angstroms; 2.0 where no radius is published
    double covalent_radius;  // Angstroms; 0.0 where not known
    double atomic_volume;    // cubic Angstroms at 298 K
    double atomic_weight;
};

// Coefficients of a1 exp(-b1 s) + a2 exp(-b2 s) + a3 exp(-b3 s) + a4 exp(-b4 s) + c.
struct ScatteringRow {
    double a1, b1, a2, b2, a3, b3, a4, b4, c;
};

// One row per code, in code order. Deuterium takes hydrogen's radii, volume
// and scattering coefficients; Es, Fm, Md, No and Lr have no published
// scattering coefficients and keep zeros, as do "Unknown" and the pseudo-elements.
// clang-format off
constexpr ElementRow element_rows[Element::ncodes_] = {
    // symbol    Z  vdW    cov    volume  weight
    {"Unknown",   0, 2.0,  0.0,  0.0,   0.0     },  // 0
    {"C",         6, 1.7,  0.68, 13.87, 12.011  },  // 1
    {"H",         1, 1.2,  0.23, 5.08,  1.008   },  // 2
    {"Ac",       89, 2.0,  1.88, 74.0,  227.0   },  // 3
    {"Ag",       47, 1.72, 1.59, 35.0,  107.87  },  // 4
    {"Al",       13, 2.0,  1.35, 39.6,  26.98   },  // 5
    {"Am",       95, 2.0,  1.51, 17.0,  243.0   },  // 6
    {"Ar",       18, 1.88, 1.61, 30.0,  39.95   },  // 7
    {"As",       33, 1.85, 1.21, 36.4,  74.93   },  // 8
    {"At",       85, 2.0,  0.0,  55.0,  210.0   },  // 9
    {"Au",       79, 1.66, 1.5,  43.0,  196.97  },  // 10
    {"B",         5, 2.0,  0.83, 13.24, 10.81   },  // 11
    {"Ba",       56, 2.0,  1.34, 66.0,  137.34  },  // 12
    {"Be",        4, 2.0,  0.35, 36.0,  9.012   },  // 13
    {"Bi",       83, 2.0,  1.54, 60.0,  208.98  },  // 14
    {"Bk",       97, 2.0,  0.0,  70.0,  247.0   },  // 15
    {"Br",       35, 1.85, 1.21, 32.7,  79.904  },  // 16
    {"Ca",       20, 2.0,  0.99, 45.0,  40.08   },  // 17
    {"Cd",       48, 1.58, 1.69, 51.0,  112.4   },  // 18
    {"Ce",       58, 2.0,  1.83, 54.0,  140.12  },  // 19
    {"Cf",       98, 2.0,  0.0,  70.0,  251.0   },  // 20
    {"Cl",       17, 1.75, 0.99, 25.8,  35.453  },  // 21
    {"Cm",       96, 2.0,  0.0,  70.0,  247.0   },  // 22
    {"Co",       27, 2.0,  1.33, 29.4,  58.933  },  // 23
    {"Cr",       24, 2.0,  1.35, 28.1,  51.996  },  // 24
    {"Cs",       55, 2.0,  1.67, 46.0,  132.906 },  // 25
    {"Cu",       29, 1.4,  1.52, 26.9,  63.546  },  // 26
    {"D",         1, 1.2,  0.23, 5.08,  2.0     },  // 27
    {"Dy",       66, 2.0,  1.75, 50.0,  162.5   },  // 28
    {"Er",       68, 2.0,  1.73, 54.0,  167.26  },  // 29
    {"Es",       99, 2.0,  0.0,  70.0,  254.0   },  // 30
    {"Eu",       63, 2.0,  1.99, 53.0,  151.96  },  // 31
    {"F",         9, 1.47, 0.64, 11.17, 18.998  },  // 32
    {"Fe",       26, 2.0,  1.34, 30.4,  55.847  },  // 33
    {"Fm",      100, 2.0,  0.0,  0.0,   257.0   },  // 34
    {"Fr",       87, 2.0,  0.0,  70.0,  223.0   },  // 35
    {"Ga",       31, 1.87, 1.22, 37.8,  69.72   },  // 36
    {"Gd",       64, 2.0,  1.79, 56.0,  157.25  },  // 37
    {"Ge",       32, 2.0,  1.17, 41.6,  72.59   },  // 38
    {"He",        2, 1.4,  0.2,  10.0,  4.003   },  // 39
    {"Hf",       72, 2.0,  1.57, 40.0,  178.49  },  // 40
    {"Hg",       80, 1.55, 1.7,  38.0,  200.59  },  // 41
    {"Ho",       67, 2.0,  1.74, 42.0,  164.93  },  // 42
    {"I",        53, 1.98, 1.4,  46.2,  126.905 },  // 43
    {"In",       49, 1.93, 1.63, 55.0,  114.82  },  // 44
    {"Ir",       77, 2.0,  1.32, 34.3,  192.22  },  // 45
    {"K",        19, 2.75, 1.33, 36.0,  39.102  },  // 46
    {"Kr",       36, 2.02, 1.45, 40.0,  83.8    },  // 47
    {"La",       57, 2.0,  1.87, 58.0,  138.906 },  // 48
    {"Li",        3, 1.82, 0.68, 22.6,  6.94    },  // 49
    {"Lu",       71, 2.0,  1.72, 35.0,  174.97  },  // 50
    {"Lr",      103, 2.0,  0.0,  0.0,   255.5   },  // 51
    {"Md",      101, 2.0,  0.0,  0.0,   256.0   },  // 52
    {"Mg",       12, 1.73, 1.1,  36.0,  24.305  },  // 53
    {"Mn",       25, 2.0,  1.35, 31.9,  54.938  },  // 54
    {"Mo",       42, 2.0,  1.47, 38.0,  95.94   },  // 55
    {"N",         7, 1.55, 0.68, 11.8,  14.007  },  // 56
    {"Na",       11, 2.27, 0.97, 26.0,  22.9898 },  // 57
    {"Nb",       41, 2.0,  1.48, 37.0,  92.906  },  // 58
    {"Nd",       60, 2.0,  1.81, 50.0,  144.24  },  // 59
    {"Ne",       10, 1.54, 0.68, 20.0,  20.17   },  // 60
    {"Ni",       28, 1.63, 1.5,  26.0,  58.71   },  // 61
    {"No",      102, 2.0,  0.0,  0.0,   254.0   },  // 62
    {"Np",       93, 2.0,  1.55, 45.0,  237.0   },  // 63
    {"O",         8, 1.52, 0.68, 11.39, 15.9994 },  // 64
    {"Os",       76, 2.0,  1.37, 41.9,  190.2   },  // 65
    {"P",        15, 1.8,  1.05, 29.5,  30.9738 },  // 66
    {"Pa",       91, 2.0,  1.61, 60.0,  231.0   },  // 67
    {"Pb",       82, 2.02, 1.54, 52.0,  207.2   },  // 68
    {"Pd",       46, 1.63, 1.5,  35.0,  106.4   },  // 69
    {"Pm",       61, 2.0,  1.8,  55.0,  145.0   },  // 70
    {"Po",       84, 2.0,  1.68, 50.0,  209.0   },  // 71
    {"Pr",       59, 2.0,  1.82, 57.0,  140.91  },  // 72
    {"Pt",       78, 1.72, 1.5,  38.0,  195.09  },  // 73
    {"Pu",       94, 2.0,  1.53, 70.0,  244.0   },  // 74
    {"Ra",       88, 2.0,  1.9,  60.0,  226.0   },  // 75
    {"Rb",       37, 2.0,  1.47, 42.0,  85.467  },  // 76
    {"Re",       75, 2.0,  1.35, 42.7,  186.2   },  // 77
    {"Rh",       45, 2.0,  1.45, 31.2,  102.906 },  // 78
    {"Rn",       86, 2.0,  0.0,  60.0,  222.0   },  // 79
    {"Ru",       44, 2.0,  1.4,  37.3,  101.07  },  // 80
    {"S",        16, 1.8,  1.02, 25.2,  32.06   },  // 81
    {"Sb",       51, 2.0,  1.46, 48.0,  121.75  },  // 82
    {"Sc",       21, 2.0,  1.44, 42.0,  44.96   },  // 83
    {"Se",       34, 1.9,  1.22, 30.3,  78.96   },  // 84
    {"Si",       14, 2.1,  1.2,  37.3,  28.09   },  // 85
    {"Sm",       62, 2.0,  1.8,  50.0,  150.4   },  // 86
    {"Sn",       50, 2.17, 1.46, 52.8,  118.69  },  // 87
    {"Sr",       38, 2.0,  1.12, 47.0,  87.62   },  // 88
    {"Ta",       73, 2.0,  1.43, 43.0,  180.947 },  // 89
    {"Tb",       65, 2.0,  1.76, 45.0,  158.9   },  // 90
    {"Tc",       43, 2.0,  1.35, 38.0,  98.906  },  // 91
    {"Te",       52, 2.06, 1.47, 46.7,  127.6   },  // 92
    {"Th",       90, 2.0,  1.79, 56.0,  232.0   },  // 93
    {"Ti",       22, 2.0,  1.47, 27.3,  47.9    },  // 94
    {"Tl",       81, 1.96, 1.55, 54.0,  204.37  },  // 95
    {"Tm",       69, 2.0,  1.72, 49.0,  168.9   },  // 96
    {"U",        92, 1.86, 1.58, 58.0,  238.03  },  // 97
    {"V",        23, 2.0,  1.33, 24.0,  50.94   },  // 98
    {"W",        74, 2.0,  1.37, 38.8,  183.85  },  // 99
    {"X",         0, 2.0,  0.0,  0.0,   0.0     },  // 100
    {"Xe",       54, 2.16, 1.62, 45.0,  131.3   },  // 101
    {"Y",        39, 2.0,  1.78, 44.0,  88.906  },  // 102
    {"Yb",       70, 2.0,  1.94, 59.0,  173.04  },  // 103
    {"Z",         0, 2.0,  0.0,  0.0,   0.0     },  // 104
    {"Zn",       30, 1.39, 1.45, 39.0,  65.37   },  // 105
    {"Zr",       40, 2.0,  1.56, 27.0,  91.22   },  // 106
    {"Zz",        0, 2.0,  0.0,  0.0,   0.0     },  // 107
};

constexpr ScatteringRow scattering_rows[Element::ncodes_] = {
    // a1      b1        a2        b2        a3        b3        a4        b4        c
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 0 Unknown
    {2.31,     20.8439,  1.02,     10.2075,  1.5886,   0.5687,   0.865,    51.6512,  0.2156  },  // 1 C
    {0.48992,  20.6593,  0.262,    7.74039,  0.19677,  49.5519,  0.04988,  2.20159,  0.00131 },  // 2 H
    {35.6597,  0.58909,  23.1032,  3.65155,  12.5977,  18.599,   4.08655,  117.02,   13.5266 },  // 3 Ac
    {19.2808,  0.6446,   16.6885,  7.4726,   4.8045,   24.6605,  1.0463,   99.8156,  5.179   },  // 4 Ag
    {6.4202,   3.0387,   1.9002,   0.7426,   1.5936,   31.5472,  1.9646,   85.0886,  1.1151  },  // 5 Al
    {36.6706,  0.48363,  24.0992,  3.20647,  17.3415,  14.3136,  3.49331,  102.273,  13.3592 },  // 6 Am
    {7.4845,   0.9072,   6.7723,   14.8407,  0.6539,   43.8983,  1.6442,   33.3929,  1.4445  },  // 7 Ar
    {16.6723,  2.6345,   6.0701,   0.2647,   3.4313,   12.9479,  4.2779,   47.7972,  2.531   },  // 8 As
    {35.3163,  0.68587,  19.0211,  3.97458,  9.49887,  11.3824,  7.42518,  45.4715,  13.7108 },  // 9 At
    {16.8819,  0.4611,   18.5913,  8.6216,   25.5582,  1.4826,   5.86,     36.3956,  12.0658 },  // 10 Au
    {2.0545,   23.2185,  1.3326,   1.021,    1.0979,   60.3498,  0.7068,   0.1403,   -0.1932 },  // 11 B
    {20.3361,  3.216,    19.297,   0.2756,   10.888,   20.2073,  2.6959,   167.202,  2.7731  },  // 12 Ba
    {1.5919,   43.6427,  1.1278,   1.8623,   0.5391,   103.483,  0.7029,   0.542,    0.0385  },  // 13 Be
    {33.3689,  0.704,    12.951,   2.9238,   16.5877,  8.7937,   6.4692,   48.0093,  13.5782 },  // 14 Bi
    {36.7881,  0.45102,  24.7736,  3.04619,  17.8919,  12.8946,  4.23284,  86.003,   13.2754 },  // 15 Bk
    {17.1789,  2.1723,   5.2358,   16.5796,  5.6377,   0.2609,   3.9851,   41.4328,  2.9557  },  // 16 Br
    {8.6266,   10.4421,  7.3873,   0.6599,   1.5899,   85.7484,  1.0211,   178.437,  1.3751  },  // 17 Ca
    {19.2214,  0.5946,   17.6444,  6.9089,   4.461,    24.7008,  1.6029,   87.4825,  5.0694  },  // 18 Cd
    {21.1671,  2.81219,  19.7695,  0.22684,  11.8513,  17.6083,  3.33049,  127.113,  1.86264 },  // 19 Ce
    {36.9185,  0.43753,  25.1995,  3.00775,  18.3317,  12.4044,  4.24391,  83.7881,  13.2674 },  // 20 Cf
    {11.4604,  0.0104,   7.1964,   1.1662,   6.2556,   18.5194,  1.6455,   47.7784,  -9.5574 },  // 21 Cl
    {36.6488,  0.46515,  24.4096,  3.08997,  17.399,   13.4346,  4.21665,  88.4834,  13.2887 },  // 22 Cm
    {12.2841,  4.2791,   7.3409,   0.2784,   4.0034,   13.5359,  2.3488,   71.1692,  1.0118  },  // 23 Co
    {10.6406,  6.1038,   7.3537,   0.392,    3.324,    20.2626,  1.4922,   98.7399,  1.1832  },  // 24 Cr
    {20.3892,  3.569,    19.1062,  0.3107,   10.662,   24.3879,  1.4953,   213.904,  3.3352  },  // 25 Cs
    {13.338,   3.5828,   7.1676,   0.247,    5.6158,   11.3966,  1.6735,   64.8126,  1.191   },  // 26 Cu
    {0.48992,  20.6593,  0.262,    7.74039,  0.19677,  49.5519,  0.04988,  2.20159,  0.00131 },  // 27 D
    {26.507,   2.1802,   17.6383,  0.20217,  14.5596,  12.1899,  2.96577,  111.874,  4.29728 },  // 28 Dy
    {27.6563,  2.07356,  16.4285,  0.22355,  14.9779,  11.3604,  2.98233,  105.703,  5.92046 },  // 29 Er
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 30 Es
    {24.6274,  2.3879,   19.0886,  0.1942,   13.7603,  13.7546,  2.9227,   123.174,  2.5745  },  // 31 Eu
    {3.5392,   10.2825,  2.6412,   4.2944,   1.517,    0.2615,   1.0243,   26.1476,  0.2776  },  // 32 F
    {11.7695,  4.7611,   7.3573,   0.3072,   3.5222,   15.3535,  2.3045,   76.8805,  1.0369  },  // 33 Fe
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 34 Fm
    {35.9299,  0.64645,  23.0547,  4.17619,  12.1439,  23.1052,  2.11253,  150.645,  13.7247 },  // 35 Fr
    {15.2354,  3.0669,   6.7006,   0.2412,   4.3591,   10.7805,  2.9623,   61.4135,  1.7189  },  // 36 Ga
    {25.0709,  2.25341,  19.0798,  0.18195,  13.8518,  12.9331,  3.54545,  101.398,  2.4196  },  // 37 Gd
    {16.0816,  2.8509,   6.3747,   0.2516,   3.7068,   11.4468,  3.683,    54.7625,  2.1313  },  // 38 Ge
    {0.8734,   9.1037,   0.6309,   3.3568,   0.3112,   22.9276,  0.178,    0.9821,   0.0064  },  // 39 He
    {29.144,   1.83262,  15.1726,  9.5999,   14.7586,  0.27512,  4.30013,  72.029,   8.58154 },  // 40 Hf
    {20.6809,  0.545,    19.0417,  8.4484,   21.6575,  1.5729,   5.9676,   38.3246,  12.6089 },  // 41 Hg
    {26.9049,  2.07051,  17.294,   0.19794,  14.5583,  11.4407,  3.63837,  92.6566,  4.56796 },  // 42 Ho
    {20.1472,  4.347,    18.9949,  0.3814,   7.5138,   27.766,   2.2735,   66.8776,  4.0712  },  // 43 I
    {19.1624,  0.5476,   18.5596,  6.3776,   4.2948,   25.8499,  2.0396,   92.8029,  4.9391  },  // 44 In
    {27.3049,  1.59279,  16.7296,  8.86553,  15.6115,  0.41792,  5.83377,  45.0011,  11.4722 },  // 45 Ir
    {8.2186,   12.7949,  7.4398,   0.7748,   1.0519,   213.187,  0.8659,   41.6841,  1.4228  },  // 46 K
    {17.3555,  1.9384,   6.7286,   16.5623,  5.5493,   0.2261,   3.5375,   39.3972,  2.825   },  // 47 Kr
    {20.578,   2.94817,  19.599,   0.24448,  11.3727,  18.7726,  3.28719,  133.124,  2.14678 },  // 48 La
    {1.1282,   3.9546,   0.7508,   1.0524,   0.6175,   85.3905,  0.4653,   168.261,  0.0377  },  // 49 Li
    {28.9476,  1.90182,  15.2208,  9.98519,  15.1,     0.26103,  3.71601,  84.3298,  7.97628 },  // 50 Lu
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 51 Lr
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 52 Md
    {5.4204,   2.8275,   2.1735,   79.2611,  1.2269,   0.3808,   2.3073,   7.1937,   0.8584  },  // 53 Mg
    {11.2819,  5.3409,   7.3573,   0.3432,   3.0193,   17.8674,  2.2441,   83.7543,  1.0896  },  // 54 Mn
    {3.7025,   0.2772,   17.2356,  1.0958,   12.8876,  11.004,   3.7429,   61.6584,  4.3875  },  // 55 Mo
    {12.2126,  0.0057,   3.1322,   9.8933,   2.0125,   28.9975,  1.1663,   0.5826,   -11.529 },  // 56 N
    {4.7626,   3.285,    3.1736,   8.8422,   1.2674,   0.3136,   1.1128,   129.424,  0.676   },  // 57 Na
    {17.6142,  1.18865,  12.0144,  11.766,   4.04183,  0.20479,  3.53346,  69.7957,  3.75591 },  // 58 Nb
    {22.6845,  2.66248,  19.6847,  0.21063,  12.774,   15.885,   2.85137,  137.903,  1.98486 },  // 59 Nd
    {3.9553,   8.4042,   3.1125,   3.4262,   1.4546,   0.2306,   1.1251,   21.7184,  0.3515  },  // 60 Ne
    {12.8376,  3.8785,   7.292,    0.2565,   4.4438,   12.1763,  2.38,     66.3421,  1.0341  },  // 61 Ni
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 62 No
    {36.1874,  0.51193,  23.5964,  3.25396,  15.6402,  15.3622,  4.1855,   97.4908,  13.3573 },  // 63 Np
    {3.0485,   13.2771,  2.2868,   5.7011,   1.5463,   0.3239,   0.867,    32.9089,  0.2508  },  // 64 O
    {28.1894,  1.62903,  16.155,   8.97948,  14.9305,  0.38266,  5.67589,  48.1647,  11.0005 },  // 65 Os
    {6.4345,   1.9067,   4.1791,   27.157,   1.78,     0.526,    1.4908,   68.1645,  1.1149  },  // 66 P
    {35.8847,  0.54775,  23.2948,  3.41519,  14.1891,  16.9235,  4.17287,  105.251,  13.4287 },  // 67 Pa
    {31.0617,  0.6902,   13.0637,  2.3576,   18.442,   8.618,    5.9696,   47.2579,  13.4118 },  // 68 Pb
    {19.3319,  0.69866,  15.5017,  7.98929,  5.29537,  25.2052,  0.60584,  76.8986,  5.26593 },  // 69 Pd
    {23.3405,  2.5627,   19.6095,  0.20209,  13.1235,  15.1009,  2.87516,  132.721,  2.02876 },  // 70 Pm
    {34.6726,  0.701,    15.4733,  3.55078,  13.1138,  9.55642,  7.02588,  47.0045,  13.677  },  // 71 Po
    {22.044,   2.77393,  19.6697,  0.22209,  12.3856,  16.7669,  2.82428,  143.644,  2.0583  },  // 72 Pr
    {27.0059,  1.51293,  17.7639,  8.81174,  15.7131,  0.42459,  5.7837,   38.6103,  11.6883 },  // 73 Pt
    {36.5254,  0.49938,  23.8083,  3.26371,  16.7707,  14.9455,  3.47947,  105.98,   13.3812 },  // 74 Pu
    {35.763,   0.61634,  22.9064,  3.87135,  12.4739,  19.9887,  3.21097,  142.325,  13.6211 },  // 75 Ra
    {17.1784,  1.7888,   9.6435,   17.3151,  5.1399,   0.2748,   1.5292,   164.934,  3.4873  },  // 76 Rb
    {28.7621,  1.67191,  15.7189,  9.09227,  14.5564,  0.3505,   5.44174,  52.0861,  10.472  },  // 77 Re
    {19.2957,  0.75154,  14.3501,  8.21758,  4.73425,  25.8749,  1.28918,  98.6062,  5.328   },  // 78 Rh
    {35.5631,  0.6631,   21.2816,  4.0691,   8.0037,   14.0422,  7.4433,   44.2473,  13.6905 },  // 79 Rn
    {19.2674,  0.80852,  12.9182,  8.43467,  4.86337,  24.7997,  1.56756,  94.2928,  5.37874 },  // 80 Ru
    {6.9053,   1.4679,   5.2034,   22.2151,  1.4379,   0.2536,   1.5863,   56.172,   0.8669  },  // 81 S
    {19.6418,  5.3034,   19.0455,  0.4607,   5.0371,   27.9074,  2.6827,   75.2825,  4.5909  },  // 82 Sb
    {9.189,    9.0213,   7.3679,   0.5729,   1.6409,   136.108,  1.468,    51.3531,  1.3329  },  // 83 Sc
    {17.0006,  2.4098,   5.8196,   0.2726,   3.9731,   15.2372,  4.3543,   43.8163,  2.8409  },  // 84 Se
    {6.2915,   2.4386,   3.0353,   32.3337,  1.9891,   0.6785,   1.541,    81.6937,  1.1407  },  // 85 Si
    {24.0042,  2.47274,  19.4258,  0.19645,  13.4396,  14.3996,  2.89604,  128.007,  2.20963 },  // 86 Sm
    {19.1889,  5.8303,   19.1005,  0.5031,   4.4585,   26.8909,  2.4663,   83.9571,  4.7821  },  // 87 Sn
    {17.5663,  1.5564,   9.8184,   14.0988,  5.422,    0.1664,   2.6694,   132.376,  2.5064  },  // 88 Sr
    {29.2024,  1.77333,  15.2293,  9.37046,  14.5135,  0.29598,  4.76492,  63.3644,  9.24354 },  // 89 Ta
    {25.8976,  2.24256,  18.2185,  0.19614,  14.3167,  12.6648,  2.95354,  115.362,  3.58324 },  // 90 Tb
    {19.1301,  0.86413,  11.0948,  8.14487,  4.64901,  21.5707,  2.71263,  86.8472,  5.40428 },  // 91 Tc
    {19.9644,  4.81742,  19.0138,  0.42089,  6.14487,  28.5284,  2.5239,   70.8403,  4.352   },  // 92 Te
    {35.5645,  0.56336,  23.4219,  3.46204,  12.7473,  17.8309,  4.80703,  99.1722,  13.4314 },  // 93 Th
    {9.7595,   7.8508,   7.3558,   0.5,      1.6991,   35.6338,  1.9021,   116.105,  1.2807  },  // 94 Ti
    {27.5446,  0.65515,  19.1584,  8.70751,  15.538,   1.96347,  5.52593,  45.8149,  13.1746 },  // 95 Tl
    {28.1819,  2.02859,  15.8851,  0.23885,  15.1542,  10.9975,  2.98706,  102.961,  6.75621 },  // 96 Tm
    {36.0228,  0.5293,   23.4128,  3.3253,   14.9491,  16.0927,  4.188,    100.613,  13.3966 },  // 97 U
    {10.2971,  6.8657,   7.3511,   0.4385,   2.0703,   26.8938,  2.0571,   102.478,  1.2199  },  // 98 V
    {29.0818,  1.72029,  15.43,    9.2259,   14.4327,  0.3217,   5.11982,  57.056,   9.8875  },  // 99 W
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 100 X
    {20.2933,  3.9282,   19.0298,  0.344,    8.9767,   26.4659,  1.99,     64.2658,  3.7118  },  // 101 Xe
    {17.776,   1.4029,   10.2946,  12.8006,  5.72629,  0.1256,   3.26588,  104.354,  1.91213 },  // 102 Y
    {28.6641,  1.9889,   15.4345,  0.25712,  15.3087,  10.6647,  2.98963,  100.417,  7.56672 },  // 103 Yb
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 104 Z
    {14.0743,  3.2655,   7.0318,   0.2333,   5.1652,   10.3163,  2.41,     58.7097,  1.3041  },  // 105 Zn
    {17.8765,  1.27618,  10.948,   11.916,   5.41732,  0.11762,  3.65721,  87.6627,  2.06929 },  // 106 Zr
    {0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0,      0.0     },  // 107 Zz
};
// clang-format on

// The columns of the rows as the public tables, built at compile time.
template <class T, class Row, std::size_t N>
constexpr std::array<T, N> column(const Row (&rows)[N], T Row::*field) {
    std::array<T, N> out{};
    for (std::size_t i = 0; i < N; ++i) out[i] = rows[i].*field;
    return out;
}

std::array<std::string, Element::ncodes_> symbol_column() {
    std::array<std::string, Element::ncodes_> out;
    for (int i = 0; i < Element::ncodes_; ++i) out[i] = element_rows[i].symbol;
    return out;
}

// Taken as unsigned, so that a negative byte is refused too.
void check_element_code(int code) {
    if (static_cast<unsigned int>(code) >= static_cast<unsigned int>(Element::ncodes_))
        throw std::invalid_argument("Element::Element: Illegal element code - " + std::to_string(code));
}

// 0 to 25 for an ASCII letter of either case, -1 for anything else.
int letter_index(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a';
    return -1;
}

// The two lookup maps from upper-cased symbol to code, one for one-letter and
// one for two-letter symbols. Keys are letters, so each map is an array
// indexed by them: a lookup upper-cases into an index, reads one slot and
// allocates nothing. -1 marks a key with no symbol.
struct SymbolMaps {
    signed char one_letter[26];
    signed char two_letter[26][26];

    SymbolMaps() {
        std::memset(one_letter, -1, sizeof one_letter);
        std::memset(two_letter, -1, sizeof two_letter);
        // Walking the codes in order, the first symbol of a key would win;
        // "Unknown", of length 7, is in neither map.
        for (int code = 0; code < Element::ncodes_; ++code) {
            const char* s = element_rows[code].symbol;
            std::size_t length = std::strlen(s);
            if (length == 1) {
                signed char& slot = one_letter[letter_index(s[0])];
                if (slot < 0) slot = static_cast<signed char>(code);
            } else if (length == 2) {
                signed char& slot = two_letter[letter_index(s[0])][letter_index(s[1])];
                if (slot < 0) slot = static_cast<signed char>(code);
            }
        }
    }
};

// Built on first use and never changed afterwards.
const SymbolMaps& symbol_maps() {
    static const SymbolMaps maps;
    return maps;
}

// The code of a one- or two-letter symbol, ignoring case, or -1.
int lookup_letters(const char* name, std::size_t length) {
    const SymbolMaps& maps = symbol_maps();
    if (length == 1) {
        int i = letter_index(name[0]);
        return i < 0 ? -1 : maps.one_letter[i];
    }
    if (length == 2) {
        int i = letter_index(name[0]);
        int j = letter_index(name[1]);
        return i < 0 || j < 0 ? -1 : maps.two_letter[i][j];
    }
    return -1;
}

// True when `name` is the word "unknown" in any case.
bool is_unknown_word(const char* name, std::size_t length) {
    static const char word[] = "UNKNOWN";
    if (length != sizeof word - 1) return false;
    for (std::size_t i = 0; i < length; ++i) {
        char c = name[i];
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        if (c != word[i]) return false;
    }
    return true;
}

// The code of `name` read as init reads it, or -1.
int lookup_name(const char* name, std::size_t length) {
    if (length == 7) return is_unknown_word(name, length) ? 0 : -1;
    return lookup_letters(name, length);
}

[[noreturn]] void illegal_name(const char* name, std::size_t length) {
    throw std::invalid_argument("Element::Element: Illegal element name: " + std::string(name, length));
}

// The code whose symbol is exactly `symbol`, or 0. Symbols differ even
// ignoring case, so the case-blind map gives the only candidate, which must
// then match exactly; "Unknown" and every miss give 0 alike.
Element::TARNCode exact_symbol_code(const char* symbol, std::size_t length) {
    int code = lookup_letters(symbol, length);
    if (code < 0) return Element::Unknown;
    const char* candidate = element_rows[code].symbol;
    if (candidate[0] != symbol[0] || (length == 2 && candidate[1] != symbol[1])) return Element::Unknown;
    return static_cast<Element::TARNCode>(code);
}

}  // namespace

const std::array<std::string, Element::ncodes_> Element::table_ = symbol_column();
const std::array<signed char, Element::ncodes_> Element::atomic_numbers_ =
    column(element_rows, &ElementRow::atomic_number);
const std::array<double, Element::ncodes_> Element::vdw_radii_ = column(element_rows, &ElementRow::vdw_radius);
const std::array<double, Element::ncodes_> Element::covalent_radii_ =
    column(element_rows, &ElementRow::covalent_radius);
const std::array<double, Element::ncodes_> Element::atomic_volumes_ =
    column(element_rows, &ElementRow::atomic_volume);
const std::array<double, Element::ncodes_> Element::atomic_weights_ =
    column(element_rows, &ElementRow::atomic_weight);

const std::array<double, Element::ncodes_> Element::a1_ = column(scattering_rows, &ScatteringRow::a1);
const std::array<double, Element::ncodes_> Element::b1_ = column(scattering_rows, &ScatteringRow::b1);
const std::array<double, Element::ncodes_> Element::a2_ = column(scattering_rows, &ScatteringRow::a2);
const std::array<double, Element::ncodes_> Element::b2_ = column(scattering_rows, &ScatteringRow::b2);
const std::array<double, Element::ncodes_> Element::a3_ = column(scattering_rows, &ScatteringRow::a3);
const std::array<double, Element::ncodes_> Element::b3_ = column(scattering_rows, &ScatteringRow::b3);
const std::array<double, Element::ncodes_> Element::a4_ = column(scattering_rows, &ScatteringRow::a4);
const std::array<double, Element::ncodes_> Element::b4_ = column(scattering_rows, &ScatteringRow::b4);
const std::array<double, Element::ncodes_> Element::c_ = column(scattering_rows, &ScatteringRow::c);

const std::array<signed char, Element::nnon_metals_> Element::non_metals_ = {
    1, 2, 5, 6, 7, 8, 9, 10, 14, 15, 16, 17, 18, 33, 34, 35, 36, 52, 53, 54, 85, 86};

Element::Element(TARNCode code) : code_(code) { check_element_code(code_); }

Element::Element(const std::string& name) { init(name); }

Element::Element(const char* name) {
    std::size_t length = name != nullptr ? std::strlen(name) : 0;
    const char* text = name != nullptr ? name : "";
    int code = lookup_name(text, length);
    if (code < 0) illegal_name(text, length);
    code_ = static_cast<TARNCode>(code);
}

Element::Element(Archive& ar) { read(ar); }

void Element::init(const std::string& name) {
    int code = lookup_name(name.data(), name.size());
    if (code < 0) illegal_name(name.data(), name.size());
    code_ = static_cast<TARNCode>(code);
}

void Element::read(Archive& ar) {
    Archive::Field field(ar, "Element::read code");
    signed char byte = 0;
    ar >> byte;
    code_ = static_cast<TARNCode>(byte);
    check_element_code(code_);
}

void Element::write(Archive& ar) const { ar << static_cast<signed char>(code_); }

void Element::print(std::ostream& out) const { out << symbol(); }

bool Element::non_metal() const {
    int z = atomic_number();
    for (signed char n : non_metals_)
        if (n == z) return true;
    return false;
}

double Element::estimated_atomic_volume(double temperature) const {
    return (1 + (temperature - 298) * 9.5e-5) * atomic_volumes_[code_];
}

double Element::xray_scattering_factor(double s) const {
    return a1_[code_] * std::exp(-b1_[code_] * s) + a2_[code_] * std::exp(-b2_[code_] * s) +
           a3_[code_] * std::exp(-b3_[code_] * s) + a4_[code_] * std::exp(-b4_[code_] * s) + c_[code_];
}

Element::TARNCode Element::atomic_number_to_tarn_code(int z) {
    for (int code = 0; code < ncodes_; ++code)
        if (atomic_numbers_[code] == z) return static_cast<TARNCode>(code);
    return Unknown;
}

Element::TARNCode Element::atomic_symbol_to_tarn_code(const std::string& symbol) {
    return exact_symbol_code(symbol.data(), symbol.size());
}

Element::TARNCode Element::atomic_symbol_to_tarn_code(const char* symbol) {
    if (symbol == nullptr) return Unknown;
    return exact_symbol_code(symbol, std::strlen(symbol));
}

bool lower_element_case(std::string& s) {
    if (s.size() != 2) return false;
    // Second letters that make a symbol with each first letter, "A" to "Z".
    // The list is wider than the element table: it takes "LW", for one.
    static const char* const second_letters[26] = {
        "CGLMRST",     // A
        "AEIKR",       // B
        "ADEFLMORSU",  // C
        "Y",           // D
        "RSU",         // E
        "EMR",         // F
        "ADE",         // G
        "EFGO",        // H
        "NR",          // I
        nullptr,       // J
        "R",           // K
        "AIUW",        // L
        "DGNO",        // M
        "ADBEIOP",     // N
        "S",           // O
        "ADBMORTU",    // P
        nullptr,       // Q
        "ABEHNU",      // R
        "BCEIMNR",     // S
        "ABCEHILM",    // T
        nullptr,       // U
        nullptr,       // V
        nullptr,       // W
        "E",           // X
        "B",           // Y
        "NRZ",         // Z
    };
    char first = s[0];
    if (first < 'A' || first > 'Z') return false;
    const char* list = second_letters[first - 'A'];
    if (list == nullptr || s[1] == '\0' || std::strchr(list, s[1]) == nullptr) return false;
    s[1] = static_cast<char>(s[1] - 'A' + 'a');
    return true;
}

std::ostream& operator<<(std::ostream& out, Element::TARNCode code) { return out << static_cast<int>(code); }

std::ostream& operator<<(std::ostream& out, const Element& e) {
    e.print(out);
    return out;
}

Archive& operator<<(Archive& ar, const Element& e) {
    e.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Element& e) {
    e.read(ar);
    return ar;
}

}  // namespace molcryst
