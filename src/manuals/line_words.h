// The words with which pages name a serial line's settings, folded. Internal to the reader of them.
#pragma once

#include "line/line_settings.h"

#include <array>
#include <string_view>

namespace qdm::line_words {

using Text = std::u16string_view;

inline constexpr std::array kSpeeds = {1200, 2400, 4800, 9600, 14400, 19200, 38400, 57600, 115200};

inline constexpr Text kSpeedWords[] = {u"baud",
                                       u"bps",
                                       u"bit/s",
                                       u"bits/s",
                                       u"bits per sec",
                                       u"bit per sec",
                                       u"波特率",
                                       u"ボーレート",
                                       u"通信速度",
                                       u"transfer rate",
                                       u"bit rate",
                                       u"bitrate",
                                       u"ubertragungsr",
                                       u"ubertragungsg",
                                       u"vitesse",
                                       u"velocidad",
                                       u"velocita",
                                       u"velocidade",
                                       u"data rate",
                                       u"传输速率",
                                       u"转送速度",
                                       u"転送速度",
                                       u"通讯速率",
                                       u"鲍率",
                                       u"transmission speed",
                                       u"transmission rate",
                                       u"communication speed",
                                       u"鮑率",
                                       u"debit",
                                       u"速率"};
inline constexpr Text kParityWords[] = {u"parit", u"parid", u"校验", u"奇偶", u"パリティ", u"校驗", u"同位"};
inline constexpr Text kStopWords[] = {u"stop bit",       u"stop-bit",     u"stopbit",        u"stop  bit",
                                      u"stoppbit",       u"stopp-bit",    u"stopp bit",      u"bit d'arret",
                                      u"bits d'arret",   u"bit de stop",  u"bits de stop",   u"bit de parada",
                                      u"bits de parada", u"bit di stop",  u"bit di arresto", u"停止位",
                                      u"ストップビット", u"stop  length", u"stop length",    u"停止比特",
                                      u"bit de paro",    u"bits de paro", u"stop:",          u"停止位元"};
// What ends the search for a value: the next label of a list.
inline constexpr Text kOtherWords[] = {
    u"data bit",      u"data length", u"datenbit",         u"datenlange",      u"flow",
    u"handshak",      u"数据位",      u"データ",           u"fluss",           u"longueur",
    u"bits de datos", u"bit dati",    u"character length", u"bits de donnees", u"bit lengt",
    u"longitud",      u"start bit",   u"startbit",         u"word length",     u"数据长度"};

inline constexpr Text kStandardWords[] = {
    u"default", u"standard",      u"factory", u"werkseinst", u"initial", u"默认",
    u"defaut",  u"predeterminad", u"预设",    u"fabrica",    u"usine",   u"fabbrica",
    u"defecto", u"出厂",          u"ab werk", u"初期",       u"初始"};

inline constexpr Text kBetweenSpeeds[] = {u" to ", u"~", u"-", u" bis ", u" a ", u"至"};

struct ParityWord {
  Text Word;
  LineParity Means;
};
inline constexpr ParityWord kParities[] = {
    {u"none", LineParity::None},    {u"non", LineParity::None},     {u"no", LineParity::None},
    {u"keine", LineParity::None},   {u"kein", LineParity::None},    {u"ohne", LineParity::None},
    {u"aucune", LineParity::None},  {u"aucun", LineParity::None},   {u"sans", LineParity::None},
    {u"ninguna", LineParity::None}, {u"ninguno", LineParity::None}, {u"nessuna", LineParity::None},
    {u"nessuno", LineParity::None}, {u"nenhuma", LineParity::None}, {u"nenhum", LineParity::None},
    {u"sin", LineParity::None},     {u"sem", LineParity::None},     {u"senza", LineParity::None},
    {u"n", LineParity::None},       {u"无", LineParity::None},      {u"無", LineParity::None},
    {u"なし", LineParity::None},    {u"否", LineParity::None},      {u"没有", LineParity::None},
    {u"even", LineParity::Even},    {u"gerade", LineParity::Even},  {u"paire", LineParity::Even},
    {u"pari", LineParity::Even},    {u"偶", LineParity::Even},      {u"odd", LineParity::Odd},
    {u"ungerade", LineParity::Odd}, {u"impaire", LineParity::Odd},  {u"dispari", LineParity::Odd},
    {u"impar", LineParity::Odd},    {u"null", LineParity::None},    {u"off", LineParity::None},
    {u"absent", LineParity::None}};

struct NumberWord {
  Text Word;
  int Value;
};
inline constexpr NumberWord kNumberWords[] = {{u"one", 1},  {u"two", 2}, {u"ein", 1},
                                              {u"zwei", 2}, {u"un", 1},  {u"deux", 2},
                                              {u"uno", 1},  {u"dos", 2}, {u"一", 1}};

}  // namespace qdm::line_words
