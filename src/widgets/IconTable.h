#pragma once

#include <array>

namespace nimbrelle {

/// The pictures of the program's icon set, by what they show.
enum class Icon {
    speaker,
    speakerLine,
    star,
    starFill,
    check,
    checkCircle,
    checkCircleFill,
    xCircleFill,
    againCircleFill,
    sealCheck,
    lock,
    sparkles,
    link,
    flame,
    moon,
    cap,
    capFill,
    sleep,
    magnifier,
    stack,
    layers,
    cursor,
    person,
    persons,
    trash,
    pencil,
    stop,
    arrowUp,
    arrowUpLine,
    gear,
    redo,
    swap,
    book,
    puzzle,
    hand,
    brain,
    tray,
    party,
    warning,
    plus,
    minus,
    chevronDown,
};

/// The drawings, in the order of Icon, on a grid of 24 by 24 with y downward. A drawing is layers with ";"
/// between them. A layer begins with how it is painted: "stroke", "fill", "fill+stroke", or "cut" and
/// "cut-fill", which take away what the layers before have drawn. Then come calls of QPainterPath:
///   M x y  moveTo    L x y  lineTo    C x1 y1 x2 y2 x y  cubicTo    Z  closeSubpath
///   E cx cy rx ry  addEllipse    R x y w h r  addRoundedRect
///   A cx cy r start sweep  arcMoveTo and arcTo, in degrees anticlockwise
inline constexpr std::array iconDrawings{
    // speaker
    "fill+stroke M 3.6 9.6 L 7 9.6 L 11.4 5.8 L 11.4 18.2 L 7 14.4 L 3.6 14.4 Z ; stroke A 11 12 "
    "4.6 -42 84 A 11 12 8.6 -42 84",
    // speakerLine
    "stroke M 3.6 9.6 L 7 9.6 L 11.4 5.8 L 11.4 18.2 L 7 14.4 L 3.6 14.4 Z A 11 12 4.6 -42 84 A "
    "11 12 8.6 -42 84",
    // star
    "stroke M 12 3.6 L 14.53 9.32 L 20.75 9.97 L 16.09 14.13 L 17.41 20.25 L 12 17.1 L 6.59 20.25 "
    "L 7.91 14.13 L 3.25 9.97 L 9.47 9.32 Z",
    // starFill
    "fill+stroke M 12 3.6 L 14.53 9.32 L 20.75 9.97 L 16.09 14.13 L 17.41 20.25 L 12 17.1 L 6.59 "
    "20.25 L 7.91 14.13 L 3.25 9.97 L 9.47 9.32 Z",
    // check
    "stroke M 5 12.8 L 9.8 17.4 L 19 7",
    // checkCircle
    "stroke E 12 12 8.8 8.8 M 8 12.3 L 10.9 15.1 L 16.1 9.3",
    // checkCircleFill
    "fill E 12 12 9.8 9.8 ; cut M 7.8 12.4 L 10.8 15.3 L 16.3 9.2",
    // xCircleFill
    "fill E 12 12 9.8 9.8 ; cut M 8.6 8.6 L 15.4 15.4 M 15.4 8.6 L 8.6 15.4",
    // againCircleFill
    "fill E 12 12 9.8 9.8 ; cut M 9.6 6.9 L 7 9.6 L 9.6 12.3 M 7.2 9.6 L 13.2 9.6 C 15.3 9.6 16.8 "
    "11 16.8 12.9 C 16.8 14.8 15.3 16.2 13.2 16.2 L 10.4 16.2",
    // sealCheck
    "fill E 12 12 7.4 7.4 E 18.4 12 3.1 3.1 E 16.53 16.53 3.1 3.1 E 12 18.4 3.1 3.1 E 7.47 16.53 "
    "3.1 3.1 E 5.6 12 3.1 3.1 E 7.47 7.47 3.1 3.1 E 12 5.6 3.1 3.1 E 16.53 7.47 3.1 3.1 ; cut M "
    "7.8 12.4 L 10.8 15.3 L 16.3 9.2",
    // lock
    "stroke M 8 10.6 L 8 8 A 12 8 4 0 180 M 16 8 L 16 10.6 ; fill+stroke R 5.4 10.6 13.2 9.4 2",
    // sparkles
    "fill M 10 4.6 C 10.8 10.2 12.2 11.7 17.8 12.6 C 12.2 13.5 10.8 15 10 20.6 C 9.2 15 7.8 13.5 "
    "2.2 12.6 C 7.8 11.7 9.2 10.2 10 4.6 Z M 18.4 2.2 C 18.8 4.7 19.5 5.4 22 5.8 C 19.5 6.2 18.8 "
    "6.9 18.4 9.4 C 18 6.9 17.3 6.2 14.8 5.8 C 17.3 5.4 18 4.7 18.4 2.2 Z",
    // link
    "stroke M 10.6 13.4 C 9.1 11.9 9.1 9.7 10.6 8.2 L 14 4.8 C 15.5 3.3 17.8 3.3 19.3 4.8 C 20.7 "
    "6.2 20.7 8.6 19.3 10 L 17.6 11.7 M 13.4 10.6 C 14.9 12.1 14.9 14.3 13.4 15.8 L 10 19.2 C 8.5 "
    "20.7 6.2 20.7 4.7 19.2 C 3.3 17.8 3.3 15.4 4.7 14 L 6.4 12.3",
    // flame
    "fill M 12.8 2.4 C 13.2 6.6 18.8 9 18.8 14.6 C 18.8 18.8 15.8 21.6 12 21.6 C 8.2 21.6 5.2 "
    "18.8 5.2 14.8 C 5.2 11.8 6.8 10.2 8 8.4 C 8.3 10.2 9 11.2 10.1 11.6 C 10 8.2 10.8 4.8 12.8 "
    "2.4 Z",
    // moon
    "stroke M 10 3.8 C 6.2 4.8 3.6 8 3.6 11.9 C 3.6 16.6 7.4 20.4 12.1 20.4 C 15.8 20.4 18.9 18.1 "
    "20.2 14.9 C 19.1 15.4 17.9 15.6 16.7 15.6 C 12.4 15.6 8.8 12 8.8 7.7 C 8.8 6.3 9.2 5 10 3.8 "
    "Z M 14.6 4 L 19.6 4 L 14.6 9.4 L 19.6 9.4",
    // cap
    "stroke M 12 4.8 L 21.6 9.6 L 12 14.4 L 2.4 9.6 Z M 6.2 11.8 L 6.2 16.4 C 9 19.2 15 19.2 17.8 "
    "16.4 L 17.8 11.8",
    // capFill
    "fill+stroke M 12 4.8 L 21.6 9.6 L 12 14.4 L 2.4 9.6 Z ; fill M 6 13.2 L 12 16.2 L 18 13.2 L "
    "18 16.8 C 15 19.9 9 19.9 6 16.8 Z",
    // sleep
    "stroke E 12 12 8.8 8.8 ; fill M 11.4 7 C 8.9 7.4 7.2 9.5 7.2 12 C 7.2 14.8 9.3 17 12.1 17 C "
    "14.4 17 16.4 15.5 16.9 13.3 C 13.4 14.6 10.1 11.2 11.4 7 Z",
    // magnifier
    "stroke E 10.6 10.6 6.6 6.6 M 15.5 15.5 L 20.4 20.4",
    // stack
    "stroke R 3.8 10.2 16.4 10 2.2 M 6 6.9 L 18 6.9 M 8.4 3.6 L 15.6 3.6",
    // layers
    "stroke M 12 3 L 20.6 7.3 L 12 11.6 L 3.4 7.3 Z M 3.4 12 L 12 16.3 L 20.6 12 M 3.4 16.6 L 12 "
    "20.9 L 20.6 16.6",
    // cursor
    "stroke M 2.8 18.2 L 7.3 5.8 L 11.8 18.2 M 4.4 14 L 10.2 14 M 17.4 5.4 L 17.4 18.6 M 14.9 3.4 "
    "C 16.3 3.4 17.4 4.1 17.4 5.4 C 17.4 4.1 18.5 3.4 19.9 3.4 M 14.9 20.6 C 16.3 20.6 17.4 19.9 "
    "17.4 18.6 C 17.4 19.9 18.5 20.6 19.9 20.6",
    // person
    "stroke E 9.2 8 3.8 3.8 M 2.6 20.2 C 2.6 16.4 5.4 14.2 9.2 14.2 C 13 14.2 15.8 16.4 15.8 20.2 "
    "A 13.4 8 3.9 -38 76 A 13.4 8 7.7 -38 76",
    // persons
    "stroke E 8.6 8.6 3.4 3.4 M 2.4 19.6 C 2.4 16.2 5 14.2 8.6 14.2 C 12.2 14.2 14.8 16.2 14.8 "
    "19.6 A 15.2 8.6 3.4 -90 180 M 17.4 14.4 C 20.2 14.9 21.8 16.8 21.8 19.6",
    // trash
    "stroke M 4 6.6 L 20 6.6 M 9 6.4 L 9 4 L 15 4 L 15 6.4 M 6.1 6.8 L 7 20.2 L 17 20.2 L 17.9 "
    "6.8 M 10.2 10.6 L 10.4 16.4 M 13.8 10.6 L 13.6 16.4",
    // pencil
    "stroke M 4 16.4 L 15 5.4 L 18.6 9 L 7.6 20 L 4 20 Z M 12.8 7.6 L 16.4 11.2 M 13.4 20 L 20.4 "
    "20",
    // stop
    "fill E 12 12 9.8 9.8 ; cut-fill R 8.3 8.3 7.4 7.4 1.4",
    // arrowUp
    "fill E 12 12 9.8 9.8 ; cut M 12 16.6 L 12 7.6 M 8 11.4 L 12 7.4 L 16 11.4",
    // arrowUpLine
    "stroke E 12 12 8.8 8.8 M 12 16.2 L 12 8 M 8.4 11.4 L 12 7.8 L 15.6 11.4",
    // gear
    "stroke M 10.4 5.6 L 10.61 3.21 L 13.39 3.21 L 13.6 5.6 L 15.4 6.34 L 17.24 4.8 L 19.2 6.76 L "
    "17.66 8.6 L 18.4 10.4 L 20.79 10.61 L 20.79 13.39 L 18.4 13.6 L 17.66 15.4 L 19.2 17.24 L "
    "17.24 19.2 L 15.4 17.66 L 13.6 18.4 L 13.39 20.79 L 10.61 20.79 L 10.4 18.4 L 8.6 17.66 L "
    "6.76 19.2 L 4.8 17.24 L 6.34 15.4 L 5.6 13.6 L 3.21 13.39 L 3.21 10.61 L 5.6 10.4 L 6.34 8.6 "
    "L 4.8 6.76 L 6.76 4.8 L 8.6 6.34 Z E 12 12 2.9 2.9",
    // redo
    "stroke A 12 12.4 7.6 25 292 M 20.2 4.6 L 19.2 9.4 L 14.4 8.6",
    // swap
    "stroke A 12 12 8 20 130 M 4.4 3.8 L 5 8.2 L 9.4 7.6 A 12 12 8 200 130 M 19.6 20.2 L 19 15.8 "
    "L 14.6 16.4",
    // book
    "stroke R 4.8 3.4 14.4 17.2 2.2 M 4.8 16.8 L 19.2 16.8 M 8.8 7.8 L 15.2 7.8 M 8.8 11.4 L 13 "
    "11.4",
    // puzzle
    "stroke M 3.8 8.6 L 8 8.6 C 6.8 5.6 8.2 3.4 10.3 3.4 C 12.4 3.4 13.8 5.6 12.6 8.6 L 16.6 8.6 "
    "L 16.6 12.4 C 19.6 11.2 21.4 12.6 21.4 14.6 C 21.4 16.6 19.6 18 16.6 16.8 L 16.6 20.4 L 3.8 "
    "20.4 Z",
    // hand
    "stroke M 8.2 13.6 L 8.2 6.4 M 11.3 11.4 L 11.3 4 M 14.4 11.4 L 14.4 4.8 M 17.5 12.6 L 17.5 "
    "7.4 M 17.5 12.4 C 17.5 17.6 16 20.8 12.2 20.8 C 9 20.8 7.4 19 6 16.6 L 3.8 12.9 C 5 11.8 6.6 "
    "12.4 8.2 14.8",
    // brain
    "stroke M 12 5.4 C 10.8 3.2 7.6 3.6 7.1 6.2 C 4.7 6.6 3.7 9.2 5 11 C 3.4 12.8 4.2 15.8 6.4 "
    "16.4 C 6.8 19.2 10.2 20.4 12 18.4 Z M 12 5.4 C 13.2 3.2 16.4 3.6 16.9 6.2 C 19.3 6.6 20.3 "
    "9.2 19 11 C 20.6 12.8 19.8 15.8 17.6 16.4 C 17.2 19.2 13.8 20.4 12 18.4 M 8.4 10.4 C 9.4 "
    "10.4 10 11 10 12 M 15.6 10.4 C 14.6 10.4 14 11 14 12",
    // tray
    "stroke M 3.8 13 L 8.2 13 C 8.2 15.2 9.8 16.4 12 16.4 C 14.2 16.4 15.8 15.2 15.8 13 L 20.2 13 "
    "M 3.8 13 L 6.4 5.2 L 17.6 5.2 L 20.2 13 L 20.2 19 L 3.8 19 Z",
    // party
    "stroke M 3.8 20.2 L 8.4 8.8 L 15.2 15.6 Z M 12.4 7.8 C 13.8 6.6 14 4.6 13 3.2 M 16.2 11.6 C "
    "17.6 10.2 19.6 10 21 11 M 15.8 8.2 L 18.4 5.6 ; fill E 20.6 3.6 1.2 1.2 E 8.6 4.4 1.1 1.1 E "
    "19.8 15.6 1.1 1.1",
    // warning
    "stroke M 12 4.2 L 21 19.6 L 3 19.6 Z M 12 10 L 12 13.8 ; fill E 12 16.6 1.2 1.2",
    // plus
    "stroke M 12 5 L 12 19 M 5 12 L 19 12",
    // minus
    "stroke M 5 12 L 19 12",
    // chevronDown
    "stroke M 6 9.4 L 12 15.2 L 18 9.4",
};

} // namespace nimbrelle
