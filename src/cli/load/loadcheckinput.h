// SPDX-License-Identifier: Apache-2.0
#pragma once

class CheckRun;
class CheckStage;

/// Shows the scene in a view and gives it what a person at a panel gives: fingers, mouse, wheel and keys.
void giveInput(CheckRun &run, CheckStage &stage);
