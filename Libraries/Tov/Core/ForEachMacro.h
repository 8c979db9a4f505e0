#pragma once

/*  TOV_FOR_EACH (macro, a, b, c) expands to macro(a) macro(b) macro(c), for up to 256
    arguments: each pass of TOV_FOR_EACH_EXPAND rescans the text, and every rescan takes
    one more argument off the list.
*/

#define TOV_FOR_EACH(macro, ...) \
    __VA_OPT__ (TOV_FOR_EACH_EXPAND (TOV_FOR_EACH_STEP (macro, __VA_ARGS__)))

#define TOV_FOR_EACH_STEP(macro, first, ...) \
    macro (first) __VA_OPT__ (TOV_FOR_EACH_AGAIN TOV_FOR_EACH_PARENTHESES (macro, __VA_ARGS__))

#define TOV_FOR_EACH_PARENTHESES ()
#define TOV_FOR_EACH_AGAIN() TOV_FOR_EACH_STEP

#define TOV_FOR_EACH_EXPAND(...)  TOV_FOR_EACH_EXPAND3 (TOV_FOR_EACH_EXPAND3 (TOV_FOR_EACH_EXPAND3 (TOV_FOR_EACH_EXPAND3 (__VA_ARGS__))))
#define TOV_FOR_EACH_EXPAND3(...) TOV_FOR_EACH_EXPAND2 (TOV_FOR_EACH_EXPAND2 (TOV_FOR_EACH_EXPAND2 (TOV_FOR_EACH_EXPAND2 (__VA_ARGS__))))
#define TOV_FOR_EACH_EXPAND2(...) TOV_FOR_EACH_EXPAND1 (TOV_FOR_EACH_EXPAND1 (TOV_FOR_EACH_EXPAND1 (TOV_FOR_EACH_EXPAND1 (__VA_ARGS__))))
#define TOV_FOR_EACH_EXPAND1(...) TOV_FOR_EACH_EXPAND0 (TOV_FOR_EACH_EXPAND0 (TOV_FOR_EACH_EXPAND0 (TOV_FOR_EACH_EXPAND0 (__VA_ARGS__))))
#define TOV_FOR_EACH_EXPAND0(...) __VA_ARGS__
