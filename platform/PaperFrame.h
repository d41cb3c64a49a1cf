#pragma once

class QAbstractScrollArea;

/// Gives a text or list box the paper's thin frame. A style's own frame lets the
/// ruled lines through, or loses an edge, where a pixel is not a whole number of
/// the screen's. Setting the frame shape to NoFrame afterwards takes the line away.
void givePaperFrame(QAbstractScrollArea &box);
